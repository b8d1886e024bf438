/// Globals that page after page runs in, for as long as each leaves them as it found them: a page
/// then costs neither new globals nor a new start of what the engine has learnt about its script.
#pragma once

#include <js/RootingAPI.h>
#include <js/TypeDecls.h>

#include <map>
#include <memory>

#include "host/compiled_script.h"
#include "host/script_image.h"
#include "platform/page/object_context.h"

namespace pelm::host::script {

class World {
 public:
  /// In the compartment of `beside`. Throws Failed.
  World(JSContext* cx, JS::HandleObject beside);

  JSObject* globals() const { return globals_; }

  /// A page's function in this world; null when the engine has a failure pending.
  JSObject* function_of(JSContext* cx, const CompiledScript& script);

  /// Takes the page's objects away; true when the globals are then as they were before it.
  bool left_as_found(JSContext* cx);

 private:
  bool forget_matches(JSContext* cx);

  JS::PersistentRootedObject globals_;
  JS::PersistentRootedObject matches_nothing_;
  std::unique_ptr<Image> image_;
  std::map<std::weak_ptr<const CompiledScript>, JS::PersistentRootedObject, std::owner_less<>>
      functions_;
};

}  // namespace pelm::host::script
