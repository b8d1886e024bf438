/// The facade through which a page reaches the working objects of its thread.
///
///     pelm::CMain main;
///     main.CConn()->Conex(nullptr);     // a thread keeps its objects from page to page
///     main.CConn()->ConfigureConn();
///     main.CConn()->OpenConn();
///     main.CBase()->cadastrar_item(1, "Pasta", 20);
///     main.end();
///
/// The working objects belong to the thread, not to the facade: a second `CMain` hands out the
/// very same ones.
#pragma once

#include <memory>
#include <string_view>

#include "pelm/object.h"

namespace pelm {

class Base;
class Calendario;
class Conn;
class ManipulaData;
class Menus;

class CMain : public Object {
 public:
  CMain();            ///< `IsWeb` is True.
  ~CMain() override;  ///< Ends it when nobody has; errors of closing are dropped then.

  /// A stored flag, read by nobody in the component.
  bool IsWeb() const { return IsWeb_; }
  void IsWeb(bool is_web) { IsWeb_ = is_web; }

  /// The thread's shared objects, each created on first read.
  std::shared_ptr<Menus> Menu();
  /// No page has started it: it writes once its `OnStartPage` has been called.
  std::shared_ptr<Calendario> Calendar();
  std::shared_ptr<ManipulaData> Data();
  std::shared_ptr<Base> CBase();
  std::shared_ptr<Conn> CConn();

  /// A number with a decimal point, by rules of its own: the fraction counts in hundredths per
  /// digit and is always added ("1.5" is 1.05, "-1.5" is -0.95). Raises 13 or 6.
  double myCDbl(std::string_view sValor) const;

  /// What the end of the object means: the page objects of the thread are let go and both
  /// connections of its `Conn` are closed. Errors of closing are raised. Only the first call of
  /// an object does anything.
  void end();

 private:
  bool IsWeb_ = true;
  bool ended_ = false;
};

}  // namespace pelm
