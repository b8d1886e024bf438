/// Calling members of objects by name, as pages and other languages do.
///
/// Contents: `CreateObject`, `call`, `get`, `put`, `class_of`, `ClassInfo` and its tables.
///
///     const pelm::ObjectRef main = pelm::automation::CreateObject("PelmComum2008.CMain");
///     const pelm::Variant conn = get(*main, "CConn");
///     std::array<OptionalArg, 1> args{Variant("select 1")};
///     call(*conn.object(), "RunSQL", args);
///
/// Names compare without case. Errors: 429 for an unknown identifier, 438 for an unknown member
/// or the wrong kind of access, 450 for too many arguments, 449 for a missing one, 13 or 6 for an
/// argument that does not convert (the text names the member and the argument), and whatever the
/// member itself raises. A by-reference argument is written back into its place in `args`.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "pelm/object.h"
#include "pelm/variant.h"

namespace pelm::page {
class ScriptingContext;
}

namespace pelm::automation {

using Arguments = std::span<OptionalArg>;

/// What an argument or a result is, for help texts and for tools.
enum class ValueKind { None, Integer, Long, Double, Boolean, Date, Text, Variant, Object };

struct ParameterInfo {
  std::string_view name;
  ValueKind kind = ValueKind::Variant;
  bool by_reference = false;
  bool optional = false;
  Variant default_value;        ///< empty when optional without default: the member sees "absent"
  std::string_view class_name;  ///< of an object argument
};

enum class MemberKind { Method, Property };

struct MemberInfo {
  std::string_view name;
  MemberKind kind = MemberKind::Method;
  std::string_view help;
  std::vector<ParameterInfo> parameters;  ///< of a property: its index arguments
  ValueKind result = ValueKind::None;
  std::string_view result_class;  ///< of an object result
  bool readable = true;           ///< properties only
  bool writable = false;
  bool is_default = false;  ///< answers when the object itself is called: rs("NOME")
  bool is_lasting = false;  ///< its answer, an object, stays right while its owner lives
  /// Method, or reading a property. Changes by-reference arguments and no others.
  std::function<Variant(Object&, Arguments)> invoke;
  std::function<void(Object&, Arguments, const Variant&)> assign;  ///< writing a property
};

struct ClassInfo {
  std::string_view name;
  std::string_view programmatic_identifier;  ///< empty: not created by pages
  std::string_view help;
  std::vector<MemberInfo> members;
  std::function<ObjectRef()> create;
  /// What the page hands to an object that it creates; may be empty.
  std::function<void(Object&, const std::shared_ptr<page::ScriptingContext>&)> page_start;
  /// What the end of the page means to an object that the page created; may be empty.
  std::function<void(Object&)> page_end;

  /// Without case; null when there is none.
  const MemberInfo* find(std::string_view member) const noexcept;
  const MemberInfo* default_member() const noexcept;
};

/// Every class, those that pages create first.
std::span<const ClassInfo* const> classes();
/// By name or programmatic identifier, without case; null when unknown.
const ClassInfo* find_class(std::string_view name) noexcept;
/// By the object's dynamic type; raises 438 for an object without a table.
const ClassInfo& class_of(const Object& object);

/// Inside a page the new object is started as well.
ObjectRef CreateObject(std::string_view programmatic_identifier);

/// Hands an object the context of the page that this thread is serving; nothing outside a page.
void start_page_object(Object& object);

/// Tells an object that a page created that the page has ended. Raises what its ending raises.
void end_page_object(Object& object);

/// Runs a method, or reads a property. An empty name means the default member. Arguments given
/// to a property that takes none go to the default member of the object it answers with:
/// `rs("NOME")` is `rs.Fields.Item("NOME")`.
Variant call(Object& object, std::string_view member, Arguments args = {});
/// Reads a property.
Variant get(Object& object, std::string_view member, Arguments index = {});
/// Writes a property. With an index that the property does not take, what it answers with is
/// written to: `rs("NOME") = v` is `rs.Fields.Item("NOME").Value = v`.
void put(Object& object, std::string_view member, const Variant& value, Arguments index = {});

/// The same with the member already looked up.
Variant call(Object& object, const ClassInfo& cls, const MemberInfo& member, Arguments args);
void put(Object& object, const ClassInfo& cls, const MemberInfo& member, const Variant& value,
         Arguments index);

}  // namespace pelm::automation
