/// The type library for people and for tools.
#pragma once

#include <string>
#include <string_view>

#include "automation/dispatch.h"

namespace pelm::automation {

/// Every class, a line each.
std::string describe_classes();
/// A class with its members, or one member with its arguments: "Base", "Base.cadastrar_item", with
/// or without "PelmComum2008." in front, in any case. Raises 429 for an unknown class, 438 for an
/// unknown member; the text lists those there are.
std::string describe(std::string_view path);

/// The same as JSON. All classes as an array; a class as an object with its members; a member as
/// an object.
std::string describe_all_as_json();
std::string describe_as_json(std::string_view path);

}  // namespace pelm::automation
