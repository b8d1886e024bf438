/// What the component keeps per thread: the shared working objects, the page objects, the shared
/// error text.
///
/// Lives as long as the thread, so longer than any `CMain` on it; nothing here is ever shared
/// between threads.
#pragma once

#include <memory>
#include <string>

#include "pelm/object.h"

namespace pelm {

class Base;
class Calendario;
class Conn;
class ManipulaData;
class Menus;

namespace identity {
class ManipulaOID;
}
namespace page {
class Application;
class Response;
}  // namespace page

namespace frame {

struct ThreadSlots {
  // In the order in which the end of a CMain releases them.
  std::shared_ptr<page::Application> application;
  ObjectRef session;  // never filled by the component, only released
  ObjectRef server;   // the same
  std::shared_ptr<page::Response> response;
  ObjectRef request;  // never filled by the component, only released

  std::shared_ptr<Conn> conn;
  std::shared_ptr<Base> base;
  std::shared_ptr<ManipulaData> data;
  std::shared_ptr<Calendario> calendar;
  std::shared_ptr<Menus> menu;
  std::shared_ptr<identity::ManipulaOID> oid_allocator;

  /// The description that an operation gives its own error 1001; keeps its last value.
  std::string MensagemErro;
};

ThreadSlots& thread_slots() noexcept;

/// The thread's connection object. Raises 91 when no page has read `CMain::CConn` on this thread.
Conn& shared_conn();

}  // namespace frame
}  // namespace pelm
