/// Objects of the component inside a script: a wrapper that finds members by name, in any case, in
/// the tables of the type library.
///
/// A property without index arguments reads as a value and is written by assignment; a method or a
/// property with index arguments reads as a function; called with one argument more than it has,
/// such a property is assigned. An object with a default member is itself callable, and gives that
/// member's value in a text or number context when it needs no argument.
#pragma once

#include <js/TypeDecls.h>

#include <memory>
#include <optional>

#include "pelm/object.h"
#include "pelm/variant.h"

namespace pelm::host::script {

/// The objects that a script context has wrapped. One wrapper for each object, so that `===` tells
/// whether two references are the same object.
class ObjectTable {
 public:
  explicit ObjectTable(JSContext* cx);
  ObjectTable(const ObjectTable&) = delete;
  ObjectTable& operator=(const ObjectTable&) = delete;
  ~ObjectTable();

  /// Ends every reference that scripts hold, whether or not they were collected. A wrapper used
  /// afterwards raises object not set (91).
  void release_all() noexcept;
  /// The last call before the engine's context goes; the table itself must outlive that, because
  /// the engine then collects its last wrappers.
  void leave_engine() noexcept;

  struct Part;
  Part& part() noexcept { return *part_; }

 private:
  std::unique_ptr<Part> part_;
};

/// The wrapper of a non-null object; throws `Failed`.
JSObject* wrap(JSContext* cx, const ObjectRef& object);
bool is_wrapper(JSObject* object) noexcept;
/// Raises object not set (91) when the page that made the wrapper has ended.
ObjectRef wrapped_object(JSObject* wrapper);

/// What the default member gives, through objects that have one in turn; nothing when one of them
/// has none or needs an argument.
std::optional<Variant> default_value(JSContext* cx, const ObjectRef& object);

}  // namespace pelm::host::script
