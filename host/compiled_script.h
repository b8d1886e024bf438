/// A page as the engine runs it: a function without parameters, so that what a page declares is its
/// own and goes with it.
#pragma once

#include <js/TypeDecls.h>
#include <js/experimental/JSStencil.h>
#include <mozilla/RefPtr.h>

#include <memory>

#include "host/page_source.h"

namespace pelm::host {

class CompiledScript : public std::enable_shared_from_this<CompiledScript> {
 public:
  /// In the current realm. Raises PageSyntaxError.
  static std::shared_ptr<CompiledScript> compile(JSContext* cx, PageSource source);

  const PageSource& source() const noexcept { return source_; }

  /// The function, new, in the current realm; null when the engine has a failure pending.
  JSObject* function(JSContext* cx) const;

  /// Whether it once left its globals otherwise than it had found them: it then gets globals that
  /// no other page sees.
  bool alters_globals() const noexcept { return alters_globals_; }
  void note_altered_globals() const noexcept { alters_globals_ = true; }

 private:
  CompiledScript(PageSource source, RefPtr<JS::Stencil> stencil);

  PageSource source_;
  RefPtr<JS::Stencil> stencil_;
  mutable bool alters_globals_ = false;
};

}  // namespace pelm::host
