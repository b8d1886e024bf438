/// Values between the component's world and the script's.
///
/// Empty is undefined, null is null, whole numbers of 32 bits are Long and others Double, dates
/// keep their local clock fields, arrays go element by element, objects are wrapped. All functions
/// throw `Failed` when the engine holds the failure.
#pragma once

#include <js/RootingAPI.h>
#include <js/TypeDecls.h>
#include <js/Value.h>

#include <string>
#include <string_view>

#include "automation/dispatch.h"
#include "pelm/variant.h"

namespace pelm::host::script {

/// Bytes that are not UTF-8 become U+FFFD.
JSString* to_script_text(JSContext* cx, std::string_view text);
/// Unpaired surrogates become U+FFFD.
std::string from_script_text(JSContext* cx, JS::HandleString text);

void to_script(JSContext* cx, const Variant& value, JS::MutableHandleValue result);

/// `wanted` decides two cases: for an object, null is "nothing" and an object stays itself; for
/// anything else null is Null and an object gives its default member's value if it has one that
/// needs no argument. Undefined is empty. Raises type mismatch (13) for a function, a symbol or a
/// plain object, and overflow (6) for a date outside the years 100 to 9999.
Variant from_script(JSContext* cx, JS::HandleValue value,
                    automation::ValueKind wanted = automation::ValueKind::Variant);

}  // namespace pelm::host::script
