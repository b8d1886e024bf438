// Printing the type library.
#include "automation/describe.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <vector>

#include "pelm/conversions.h"
#include "pelm/error.h"
#include "platform/value/text.h"

namespace pelm::automation {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::string_view kLibraryPrefix = "PelmComum2008.";

std::string_view kind_name(ValueKind kind) {
  constexpr std::array<std::string_view, 9> kNames = {
      "None", "Integer", "Long", "Double", "Boolean", "Date", "Text", "Variant", "Object"};
  return kNames[static_cast<std::size_t>(kind)];
}

/// A type as people read it: an object by its class.
std::string type_text(ValueKind kind, std::string_view class_name) {
  return std::string(kind == ValueKind::Object && !class_name.empty() ? class_name
                                                                      : kind_name(kind));
}

std::string default_text(const Variant& value) {
  if (value.is_null()) return "Null";
  return value.is_text() ? "\"" + value.text() + "\"" : to_text(value);
}

std::string parameter_text(const ParameterInfo& p) {
  std::string text(p.name);
  if (p.by_reference) text += "&";
  text += ": " + type_text(p.kind, p.class_name);
  if (!p.optional) return text;
  if (!p.default_value.is_empty()) text += " = " + default_text(p.default_value);
  return "[" + text + "]";
}

/// "cadastrar_item(pCRIADOPOR: Long, …) -> Long"
std::string signature(const MemberInfo& member) {
  std::string text(member.name);
  if (member.kind == MemberKind::Method || !member.parameters.empty()) {
    text += "(";
    for (const ParameterInfo& p : member.parameters) {
      if (&p != &member.parameters.front()) text += ", ";
      text += parameter_text(p);
    }
    text += ")";
  }
  if (member.result != ValueKind::None) {
    text += " -> " + type_text(member.result, member.result_class);
  }
  return text;
}

std::string_view access(const MemberInfo& member) {
  if (member.kind == MemberKind::Method) return "method";
  return member.writable ? "property, read and written" : "property, read only";
}

std::string describe_class(const ClassInfo& cls) {
  std::string text(cls.name);
  if (!cls.programmatic_identifier.empty()) {
    text.append(" (").append(cls.programmatic_identifier).append(")");
  }
  text.append("\n  ").append(cls.help).append("\n");
  for (const MemberInfo& member : cls.members) {
    text += "\n" + signature(member) + "\n    " + std::string(member.help) + "\n";
  }
  return text;
}

std::string describe_member(const ClassInfo& cls, const MemberInfo& member) {
  std::string text = std::string(cls.name) + "." + signature(member) + "\n";
  text.append("  ").append(access(member)).append("\n  ").append(member.help).append("\n");
  for (const ParameterInfo& p : member.parameters) {
    text += "\n  " + std::string(p.name) + "  " + type_text(p.kind, p.class_name);
    if (p.by_reference) text += ", by reference";
    if (p.optional) {
      text += p.default_value.is_empty() ? ", may be left out"
                                         : ", default " + default_text(p.default_value);
    }
  }
  if (!member.parameters.empty()) text += "\n";
  return text;
}

Json value_json(const Variant& value) {
  switch (value.type()) {
    case Variant::Type::Integer:
      return value.integer();
    case Variant::Type::Long:
      return value.long_value();
    case Variant::Type::Double:
      return value.double_value();
    case Variant::Type::Boolean:
      return value.boolean();
    case Variant::Type::Text:
      return value.text();
    default:
      return nullptr;
  }
}

Json to_json(const ParameterInfo& p) {
  Json json = {{"name", p.name}, {"type", kind_name(p.kind)}};
  if (!p.class_name.empty()) json["class"] = p.class_name;
  json["by_reference"] = p.by_reference;
  json["optional"] = p.optional;
  if (!p.default_value.is_empty()) json["default"] = value_json(p.default_value);
  return json;
}

Json to_json(const MemberInfo& member) {
  const bool is_method = member.kind == MemberKind::Method;
  Json json = {{"name", member.name}, {"kind", is_method ? "method" : "property"}};
  json["help"] = member.help;
  json["signature"] = signature(member);
  json["type"] = kind_name(member.result);
  if (!member.result_class.empty()) json["class"] = member.result_class;
  if (!is_method) json["writable"] = member.writable;
  json["default_member"] = member.is_default;
  json["parameters"] = Json::array();
  for (const ParameterInfo& p : member.parameters) json["parameters"].push_back(to_json(p));
  return json;
}

Json to_json(const ClassInfo& cls) {
  Json json = {{"name", cls.name}};
  if (!cls.programmatic_identifier.empty()) {
    json["programmatic_identifier"] = cls.programmatic_identifier;
  }
  json["help"] = cls.help;
  json["members"] = Json::array();
  for (const MemberInfo& member : cls.members) json["members"].push_back(to_json(member));
  return json;
}

struct Found {
  const ClassInfo& cls;
  const MemberInfo* member;  // null: the class as a whole
};

template <class Items>
std::string listed(const Items& items, auto name_of) {
  std::string list;
  for (const auto& item : items) {
    if (!list.empty()) list += ", ";
    list += name_of(item);
  }
  return list;
}

Found find(std::string_view path) {
  if (const ClassInfo* cls = find_class(path)) return {*cls, nullptr};
  const std::string head(path.substr(0, kLibraryPrefix.size()));
  if (text::equal_case_blind(head, kLibraryPrefix)) path.remove_prefix(kLibraryPrefix.size());

  const std::size_t dot = path.find('.');
  const ClassInfo* cls = find_class(path.substr(0, dot));
  if (cls == nullptr) {
    raise_error(error_number::kCannotCreateObject, kProjectSource,
                std::string(path) + " (" + listed(classes(), [](const ClassInfo* c) {
                  return std::string(c->name);
                }) + ")");
  }
  if (dot == std::string_view::npos) return {*cls, nullptr};

  const MemberInfo* member = cls->find(path.substr(dot + 1));
  if (member == nullptr) {
    raise_error(error_number::kMemberNotFound, kProjectSource,
                std::string(path) + " (" + listed(cls->members, [](const MemberInfo& m) {
                  return std::string(m.name);
                }) + ")");
  }
  return {*cls, member};
}

constexpr int kIndent = 2;

}  // namespace

std::string describe_classes() {
  std::size_t width = 0;
  for (const ClassInfo* cls : classes()) width = std::max(width, cls->name.size());
  std::string text;
  for (const ClassInfo* cls : classes()) {
    text += std::string(cls->name) + std::string(width + 2 - cls->name.size(), ' ') +
            std::string(cls->help) + "\n";
  }
  return text;
}

std::string describe(std::string_view path) {
  const Found found = find(path);
  return found.member == nullptr ? describe_class(found.cls)
                                 : describe_member(found.cls, *found.member);
}

std::string describe_all_as_json() {
  Json json = Json::array();
  for (const ClassInfo* cls : classes()) json.push_back(to_json(*cls));
  return json.dump(kIndent) + "\n";
}

std::string describe_as_json(std::string_view path) {
  const Found found = find(path);
  const Json json = found.member == nullptr ? to_json(found.cls) : to_json(*found.member);
  return json.dump(kIndent) + "\n";
}

}  // namespace pelm::automation
