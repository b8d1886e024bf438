/// The root of every object that a page can hold a reference to.
#pragma once

#include <memory>

namespace pelm {

/// Has no members of its own: which members a page may call by name is told by the type library
/// (automation/), which knows an object by its dynamic type.
class Object {
 public:
  Object() = default;
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;
  virtual ~Object();
};

using ObjectRef = std::shared_ptr<Object>;

}  // namespace pelm
