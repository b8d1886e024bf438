/// What a page finds among its globals besides the language: the page objects, `crypto`, and what
/// its own text was turned into calls of.
///
/// All of these throw `Failed`.
#pragma once

#include <js/TypeDecls.h>

#include "platform/page/object_context.h"

namespace pelm::host::script {

/// Globals of a new realm, in the compartment of `beside`, or in one of its own where that is null.
/// The page objects are there, and undefined.
JSObject* new_globals(JSContext* cx, JS::HandleObject beside);

/// Of the current realm: what a page that has overwritten them finds is what is given here.
void give_page_objects(JSContext* cx, JS::HandleObject globals,
                       const page::ScriptingContext& context);
void take_page_objects(JSContext* cx, JS::HandleObject globals);

}  // namespace pelm::host::script
