/// The root of every object that a page can hold a reference to.
#pragma once

#include <memory>

namespace pelm {

/// Can tell its own reference while a shared_ptr owns it. Which members a page may call by name is
/// told by the type library (automation/), which knows an object by its dynamic type.
class Object : public std::enable_shared_from_this<Object> {
 public:
  Object() = default;
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;
  virtual ~Object();
};

using ObjectRef = std::shared_ptr<Object>;

}  // namespace pelm
