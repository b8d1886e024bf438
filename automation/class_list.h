/// The tables of the type library, one function a class; adding a class is adding one here.
#pragma once

#include <memory>
#include <string_view>
#include <type_traits>
#include <typeindex>
#include <utility>
#include <vector>

#include "automation/dispatch.h"

namespace pelm::automation {

/// A class's table and the dynamic type of its objects.
struct ClassEntry {
  ClassInfo info;
  std::type_index type;
};

/// A table of `T`; `create` is set for a class that pages create.
template <class T>
ClassEntry class_table(std::string_view name, std::string_view programmatic_identifier,
                       std::string_view help, std::vector<MemberInfo> members) {
  ClassEntry entry{{}, typeid(T)};
  entry.info.name = name;
  entry.info.programmatic_identifier = programmatic_identifier;
  entry.info.help = help;
  entry.info.members = std::move(members);
  if constexpr (std::is_default_constructible_v<T>) {
    if (!programmatic_identifier.empty()) {
      entry.info.create = []() -> ObjectRef { return std::make_shared<T>(); };
    }
  }
  return entry;
}

// The component's classes.
ClassEntry manipula_data_table();
ClassEntry treeview_table();
ClassEntry calendario_table();
ClassEntry menus_table();
ClassEntry conn_table();
ClassEntry base_table();
ClassEntry cmain_table();
// The database objects.
ClassEntry connection_table();
ClassEntry command_table();
ClassEntry parameter_table();
ClassEntry parameters_table();
ClassEntry recordset_table();
ClassEntry fields_table();
ClassEntry field_table();
// The page objects.
ClassEntry application_table();
ClassEntry session_table();
ClassEntry request_table();
ClassEntry response_table();
ClassEntry server_table();
ClassEntry named_values_table();
ClassEntry scripting_context_table();

}  // namespace pelm::automation
