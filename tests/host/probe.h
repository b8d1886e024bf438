// An object with one member of each kind, to show how scripts see them.
#pragma once

#include <map>
#include <string>

#include "host/page_hooks.h"
#include "pelm/object.h"
#include "pelm/variant.h"

namespace pelm::host::testing {

/// Created as "Teste.Probe". Counts how many there are.
class Probe : public Object {
 public:
  Probe();
  ~Probe() override;

  static int alive();

  std::string name = "sem nome";
  Variant value;
  std::map<std::string, Variant> fields;
  bool ended = false;
};

/// Has a default member that needs an argument; created as "Teste.Colecao".
class Collection : public Object {};

/// The hooks of the program, with these two classes besides. What was ended is written to `ended`,
/// by name; ending one of the name "falha" raises an error.
PageHooks probe_hooks(std::string& ended);

}  // namespace pelm::host::testing
