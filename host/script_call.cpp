// Calling a member of an object for a page.
#include "host/script_call.h"

#include <js/GCVector.h>
#include <js/Object.h>
#include <js/PropertyAndElement.h>
#include <jsapi.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "host/script_errors.h"
#include "host/script_object.h"
#include "host/script_state.h"
#include "host/script_values.h"
#include "pelm/error.h"

namespace pelm::host::script {

using automation::ClassInfo;
using automation::MemberInfo;
using automation::MemberKind;
using automation::ValueKind;

namespace {

/// Arguments of one call, and the script's holders of those that may be changed.
class CallArguments {
 public:
  CallArguments(JSContext* cx, const MemberInfo& member, const JS::CallArgs& args, unsigned count)
      : cx_(cx),
        member_(member),
        values_(few_.data(), std::min<std::size_t>(count, few_.size())),
        holders_(cx) {
    if (count > few_.size()) {
      many_.resize(count);
      values_ = many_;
    }
    JS::RootedValue value(cx);
    for (unsigned i = 0; i < count; ++i) {
      value = args[i];
      take_holder(i, count, &value);
      if (!value.isUndefined()) values_[i].emplace(from_script(cx, value, kind_of(i)));
    }
  }

  automation::Arguments values() const { return values_; }

  /// By-reference arguments go back into `{value: …}`.
  void give_back() {
    if (holders_.empty()) return;
    JS::RootedValue value(cx_);
    JS::RootedObject holder(cx_);
    for (std::size_t i = 0; i < values_.size() && i < member_.parameters.size(); ++i) {
      if (!holders_[i] || !member_.parameters[i].by_reference || !values_[i]) continue;
      holder = holders_[i];
      to_script(cx_, *values_[i], &value);
      require(JS_SetProperty(cx_, holder, "value", value));
    }
  }

 private:
  ValueKind kind_of(unsigned i) const {
    return i < member_.parameters.size() ? member_.parameters[i].kind : ValueKind::Variant;
  }

  /// A plain object with a property `value` of its own stands for that value.
  void take_holder(unsigned i, unsigned count, JS::MutableHandleValue value) {
    if (!value.isObject()) return;
    const JS::RootedObject object(cx_, &value.toObject());
    js::ESClass kind = js::ESClass::Other;
    if (is_wrapper(object)) return;
    require(JS::GetBuiltinClass(cx_, object, &kind));
    bool has_value = false;
    if (kind == js::ESClass::Object) require(JS_HasOwnProperty(cx_, object, "value", &has_value));
    if (!has_value) return;
    require(JS_GetProperty(cx_, object, "value", value));
    if (holders_.empty()) require(holders_.resize(count));
    holders_[i].set(object);
  }

  JSContext* cx_;
  const MemberInfo& member_;
  std::array<OptionalArg, 4> few_;
  std::vector<OptionalArg> many_;  // for the few calls that have more
  automation::Arguments values_;
  JS::RootedObjectVector holders_;  // of every argument, once there is one
};

void call_and_give_back(JSContext* cx, const Target& target, CallArguments& arguments,
                        JS::MutableHandleValue result) {
  const Variant answer = [&] {
    try {
      return automation::call(*target.object, *target.cls, *target.member, arguments.values());
    } catch (const Error&) {
      arguments.give_back();
      throw;
    }
  }();
  arguments.give_back();
  to_script(cx, answer, result);
}

/// `Session.Value("n", v)`: one argument more than the property has assigns it. Where it cannot be
/// assigned, the default member of the object it answers with can: `rs.Fields("NOME", v)`.
/// False when neither can.
bool assign_by_call(JSContext* cx, const Target& target, const JS::CallArgs& args) {
  const MemberInfo& member = *target.member;
  const unsigned index_count = args.length() - 1;
  CallArguments index(cx, member, args, index_count);
  if (member.writable) {
    automation::put(*target.object, *target.cls, member,
                    from_script(cx, args[index_count], member.result), index.values());
    return true;
  }
  if (member.result != ValueKind::Object && member.result != ValueKind::Variant) return false;
  const Variant answer = automation::call(*target.object, *target.cls, member, index.values());
  if (!answer.is_object() || !answer.object()) return false;
  const ClassInfo& cls = class_of(cx, *answer.object());
  const MemberInfo* value = cls.default_member();
  if (!value || !value->writable || !value->parameters.empty()) return false;
  automation::put(*answer.object(), cls, *value, from_script(cx, args[index_count], value->result),
                  {});
  return true;
}

}  // namespace

const ClassInfo& class_of(JSContext* cx, const Object& object) {
  return state_of(cx).hooks->class_of(object);
}

[[noreturn]] void refuse_member(const ClassInfo& cls, std::string_view member) {
  raise_error(error_number::kMemberNotFound, kProjectSource,
              std::string(cls.name) + "." + std::string(member));
}

bool reads_as_value(const MemberInfo& member) {
  return member.kind == MemberKind::Property && member.parameters.empty();
}

Target default_target(JSContext* cx, ObjectRef object, const ClassInfo& first,
                      bool with_arguments) {
  const ClassInfo* cls = &first;
  for (;;) {
    const MemberInfo* member = cls->default_member();
    if (!member) refuse_member(*cls, "(padrão)");
    if (!with_arguments || !reads_as_value(*member)) return {std::move(object), cls, member};
    const Variant answer = automation::call(*object, *cls, *member, {});
    if (!answer.is_object()) {
      raise_error(error_number::kWrongArgumentCount, kProjectSource,
                  std::string(cls->name) + "." + std::string(member->name));
    }
    if (!answer.object()) raise_error(error_number::kObjectNotSet);
    object = answer.object();
    cls = &class_of(cx, *object);
  }
}

void invoke(JSContext* cx, const Target& target, const JS::CallArgs& args) {
  const MemberInfo& member = *target.member;
  const bool assigns = member.kind == MemberKind::Property && !member.parameters.empty() &&
                       args.length() == member.parameters.size() + 1;
  if (assigns && assign_by_call(cx, target, args)) {
    args.rval().setUndefined();
    return;
  }
  CallArguments arguments(cx, member, args, args.length());
  call_and_give_back(cx, target, arguments, args.rval());
}

}  // namespace pelm::host::script
