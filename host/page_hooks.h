/// What the host asks of whoever knows the classes. Given once, at start.
#pragma once

#include <functional>
#include <string_view>

#include "automation/dispatch.h"
#include "pelm/object.h"

namespace pelm::host {

struct PageHooks {
  /// Creates an object by its programmatic identifier; the page's context is in force.
  std::function<ObjectRef(std::string_view programmatic_identifier)> create_object =
      automation::CreateObject;
  /// Called at the end of a page for each object that it created, last created first.
  std::function<void(Object&)> end_object = automation::end_page_object;
  /// The table of an object's members.
  std::function<const automation::ClassInfo&(const Object&)> class_of = automation::class_of;
};

}  // namespace pelm::host
