// Calling members by name: finding the member, completing and checking its arguments.
#include "automation/dispatch.h"

#include <algorithm>
#include <functional>
#include <map>
#include <string>
#include <typeindex>
#include <vector>

#include "automation/bad_argument.h"
#include "automation/class_list.h"
#include "pelm/error.h"
#include "platform/page/object_context.h"
#include "platform/value/text.h"

namespace pelm::automation {
namespace {

struct TypeLibrary {
  std::vector<ClassEntry> entries;
  std::vector<const ClassInfo*> list;
  std::map<const char*, const ClassInfo*, std::less<>> by_type_name;  // by the name's address

  TypeLibrary() {
    for (ClassEntry (*table)() : {cmain_table,     conn_table,          base_table,
                                  menus_table,     manipula_data_table, calendario_table,
                                  treeview_table,  connection_table,    command_table,
                                  recordset_table, parameter_table,     parameters_table,
                                  fields_table,    field_table,         application_table,
                                  session_table,   request_table,       response_table,
                                  server_table,    named_values_table,  scripting_context_table}) {
      entries.push_back(table());
    }
    for (const ClassEntry& entry : entries) {
      list.push_back(&entry.info);
      by_type_name.emplace(entry.type.name(), &entry.info);
    }
  }
};

const TypeLibrary& type_library() {
  static const TypeLibrary library;
  return library;
}

std::string path(const ClassInfo& cls, std::string_view member) {
  return std::string(cls.name) + "." + std::string(member);
}

[[noreturn]] void refuse_member(const ClassInfo& cls, std::string_view member) {
  raise_error(error_number::kMemberNotFound, kProjectSource, path(cls, member));
}

const MemberInfo& member_of(const ClassInfo& cls, std::string_view name) {
  const MemberInfo* member = name.empty() ? cls.default_member() : cls.find(name);
  if (!member) refuse_member(cls, name.empty() ? "(padrão)" : name);
  return *member;
}

/// Arguments as the member wants them: none missing, omitted ones given their defaults.
std::vector<OptionalArg> completed(const ClassInfo& cls, const MemberInfo& member,
                                   Arguments given) {
  const std::vector<ParameterInfo>& wanted = member.parameters;
  if (given.size() > wanted.size()) {
    raise_error(error_number::kWrongArgumentCount, kProjectSource,
                path(cls, member.name) + " (máximo " + std::to_string(wanted.size()) +
                    ", recebidos " + std::to_string(given.size()) + ")");
  }
  std::vector<OptionalArg> result(given.begin(), given.end());
  result.resize(wanted.size());
  for (std::size_t i = 0; i < wanted.size(); ++i) {
    if (result[i]) continue;
    if (!wanted[i].optional) {
      raise_error(error_number::kArgumentNotOptional, kProjectSource,
                  path(cls, member.name) + ": " + std::string(wanted[i].name));
    }
    if (!wanted[i].default_value.is_empty()) result[i] = wanted[i].default_value;
  }
  return result;
}

bool is_complete(const MemberInfo& member, Arguments given) {
  return given.size() == member.parameters.size() &&
         std::ranges::all_of(given, [](const OptionalArg& a) { return a.has_value(); });
}

/// Gives by-reference results back however the call ends: a failure keeps what was changed.
class ReturnByReference {
 public:
  ReturnByReference(const MemberInfo& member, Arguments given, std::vector<OptionalArg>& used)
      : member_(member), given_(given), used_(used) {}
  ReturnByReference(const ReturnByReference&) = delete;
  ReturnByReference& operator=(const ReturnByReference&) = delete;
  ~ReturnByReference() {
    for (std::size_t i = 0; i < given_.size(); ++i) {
      if (member_.parameters[i].by_reference && given_[i]) given_[i] = std::move(used_[i]);
    }
  }

 private:
  const MemberInfo& member_;
  Arguments given_;
  std::vector<OptionalArg>& used_;
};

[[noreturn]] void refuse_argument(const ClassInfo& cls, const MemberInfo& member,
                                  const BadArgument& bad) {
  raise_error(bad.error.number(), kProjectSource,
              path(cls, member.name) + ": " + std::string(member.parameters[bad.index].name));
}

/// Arguments for the default member of the object that a property answers with.
Variant call_default_of(const Variant& answer, const ClassInfo& cls, const MemberInfo& member,
                        Arguments args) {
  if (!answer.is_object()) {
    raise_error(error_number::kWrongArgumentCount, kProjectSource, path(cls, member.name));
  }
  if (!answer.object()) raise_error(error_number::kObjectNotSet);
  return call(*answer.object(), {}, args);
}

/// The object that a property answered with, to be assigned through: rs("NOME") = v.
Object& answered_object(const Variant& answer, const ClassInfo& cls, const MemberInfo& member) {
  if (!answer.is_object() || !answer.object()) refuse_member(cls, member.name);
  return *answer.object();
}

bool takes_no_arguments(const MemberInfo& member) {
  return member.kind == MemberKind::Property && member.parameters.empty();
}

}  // namespace

const MemberInfo* ClassInfo::find(std::string_view member) const noexcept {
  const auto found = std::ranges::find_if(
      members, [&](const MemberInfo& m) { return text::equal_case_blind(m.name, member); });
  return found == members.end() ? nullptr : &*found;
}

const MemberInfo* ClassInfo::default_member() const noexcept {
  const auto found = std::ranges::find_if(members, &MemberInfo::is_default);
  return found == members.end() ? nullptr : &*found;
}

std::span<const ClassInfo* const> classes() { return type_library().list; }

const ClassInfo* find_class(std::string_view name) noexcept {
  for (const ClassInfo* cls : type_library().list) {
    if (text::equal_case_blind(cls->name, name)) return cls;
    if (!cls->programmatic_identifier.empty() &&
        text::equal_case_blind(cls->programmatic_identifier, name)) {
      return cls;
    }
  }
  return nullptr;
}

const ClassInfo& class_of(const Object& object) {
  const auto& by_type_name = type_library().by_type_name;
  const auto known = by_type_name.find(typeid(object).name());
  if (known != by_type_name.end()) return *known->second;
  // Another shared object may have a name of its own for the same type.
  const auto& entries = type_library().entries;
  const auto found = std::ranges::find(entries, std::type_index(typeid(object)), &ClassEntry::type);
  if (found == entries.end()) raise_error(error_number::kMemberNotFound);
  return found->info;
}

ObjectRef CreateObject(std::string_view programmatic_identifier) {
  for (const ClassInfo* cls : type_library().list) {
    if (cls->create &&
        text::equal_case_blind(cls->programmatic_identifier, programmatic_identifier)) {
      ObjectRef object = cls->create();
      start_page_object(*object);
      return object;
    }
  }
  raise_error(error_number::kCannotCreateObject, kProjectSource, programmatic_identifier);
}

void start_page_object(Object& object) {
  const std::shared_ptr<page::ScriptingContext>& context = page::GetObjectContext();
  if (!context) return;
  const ClassInfo& cls = class_of(object);
  if (cls.page_start) cls.page_start(object, context);
}

void end_page_object(Object& object) {
  const ClassInfo& cls = class_of(object);
  if (cls.page_end) cls.page_end(object);
}

Variant call(Object& object, const ClassInfo& cls, const MemberInfo& member, Arguments args) {
  if (!member.readable) refuse_member(cls, member.name);
  if (!args.empty() && takes_no_arguments(member)) {
    return call_default_of(member.invoke(object, {}), cls, member, args);
  }
  try {
    if (is_complete(member, args)) return member.invoke(object, args);
    std::vector<OptionalArg> used = completed(cls, member, args);
    const ReturnByReference after(member, args, used);
    return member.invoke(object, used);
  } catch (const BadArgument& bad) {
    refuse_argument(cls, member, bad);
  }
}

void put(Object& object, const ClassInfo& cls, const MemberInfo& member, const Variant& value,
         Arguments index) {
  if (!index.empty() && takes_no_arguments(member)) {
    put(answered_object(member.invoke(object, {}), cls, member), {}, value, index);
    return;
  }
  if (!index.empty() && !member.writable && member.kind == MemberKind::Property) {
    put(answered_object(call(object, cls, member, index), cls, member), {}, value);
    return;
  }
  if (!member.writable) refuse_member(cls, member.name);
  std::vector<OptionalArg> used = completed(cls, member, index);
  try {
    member.assign(object, used, value);
  } catch (const BadArgument& bad) {
    refuse_argument(cls, member, bad);
  }
}

Variant call(Object& object, std::string_view name, Arguments args) {
  const ClassInfo& cls = class_of(object);
  return call(object, cls, member_of(cls, name), args);
}

Variant get(Object& object, std::string_view name, Arguments index) {
  const ClassInfo& cls = class_of(object);
  const MemberInfo& member = member_of(cls, name);
  if (member.kind != MemberKind::Property) refuse_member(cls, name);
  return call(object, cls, member, index);
}

void put(Object& object, std::string_view name, const Variant& value, Arguments index) {
  const ClassInfo& cls = class_of(object);
  put(object, cls, member_of(cls, name), value, index);
}

}  // namespace pelm::automation
