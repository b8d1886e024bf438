/// Calling a member of an object for a page: its arguments come from the script, its answer and
/// what it changed go back there.
///
/// All of these raise Error, or throw Failed when the engine has a failure pending.
#pragma once

#include <js/CallArgs.h>
#include <js/TypeDecls.h>

#include <string_view>

#include "automation/dispatch.h"
#include "pelm/object.h"

namespace pelm::host::script {

/// A member of an object, ready to be called.
struct Target {
  ObjectRef object;
  const automation::ClassInfo* cls;
  const automation::MemberInfo* member;
};

const automation::ClassInfo& class_of(JSContext* cx, const Object& object);

/// Raises kMemberNotFound.
[[noreturn]] void refuse_member(const automation::ClassInfo& cls, std::string_view member);

/// A property without arguments; everything else reads as a function.
bool reads_as_value(const automation::MemberInfo& member);

/// The default member, or that of the object it answers with while there are arguments that it
/// does not take itself: rs("NOME") is rs.Fields.Item("NOME").
Target default_target(JSContext* cx, ObjectRef object, const automation::ClassInfo& cls,
                      bool with_arguments);

/// Calls, or assigns where there is one argument more than the property has.
void invoke(JSContext* cx, const Target& target, const JS::CallArgs& args);

}  // namespace pelm::host::script
