/// A page that a program serves itself: where its variables come from and where its text goes.
///
///     pelm::PageScope page(
///         [&](std::string_view name) { return settings.find(name); },
///         [&](std::string_view text) { answer += text; });
///     main.Menu()->Montar_Menu(5, 1);  // HM_Array1 goes to `answer`
///
/// Not needed where a host serves pages, which does the same for each of them.
#pragma once

#include <functional>
#include <memory>
#include <string_view>

#include "pelm/variant.h"

namespace pelm {

namespace page {
class ScopedObjectContext;
class ScriptingContext;
}  // namespace page

/// From its construction to its end the thread serves this page. Scopes nest, as blocks do. What
/// the component kept of the page asks nothing and writes nowhere once it has ended.
class PageScope {
 public:
  /// An application variable; empty when there is none of that name.
  using Variables = std::function<Variant(std::string_view name)>;
  /// Takes each text that is written to the page.
  using Output = std::function<void(std::string_view text)>;

  /// Either may be null. `query_string` is what stands behind the "?" of the page's address.
  PageScope(Variables variables, Output output, std::string_view query_string = {});
  PageScope(const PageScope&) = delete;
  PageScope& operator=(const PageScope&) = delete;
  ~PageScope();

  /// For the `OnStartPage` of a widget that the program makes itself.
  const std::shared_ptr<page::ScriptingContext>& context() const { return context_; }

 private:
  struct Functions;
  const std::shared_ptr<Functions> functions_;  // none once the page has ended
  const std::shared_ptr<page::ScriptingContext> context_;
  std::unique_ptr<page::ScopedObjectContext> serving_;
};

}  // namespace pelm
