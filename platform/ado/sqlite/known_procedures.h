/// Procedures as last read from the database, so that a script that has not changed is not taken
/// apart again for each call.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace pelm::ado::sqlite {

struct Procedure {
  struct Parameter {
    std::string name;  ///< with its @
    bool output = false;
  };

  std::string name;
  std::vector<Parameter> parameters;
  std::vector<std::string> statements;
};

class KnownProcedures {
 public:
  /// The procedure that these three texts say; `parameters` as a procedure's head declares them.
  std::shared_ptr<const Procedure> read(std::string_view name, std::string_view parameters,
                                        std::string_view script);
  bool has(std::string_view name) const { return by_name_.contains(name); }

 private:
  static constexpr std::size_t kMost = 32;

  struct Known {
    std::string parameters;
    std::string script;
    std::shared_ptr<const Procedure> procedure;
  };
  std::map<std::string, Known, std::less<>> by_name_;
};

}  // namespace pelm::ado::sqlite
