// Cases kept in text files.
#include "platform/ado/sqlite/case_file.h"

#include <fstream>
#include <stdexcept>

namespace pelm::ado::sqlite::test {

std::vector<Case> read_cases(const std::string& name) {
  std::ifstream in(PELM_TESTS_DIR "/platform/ado/sqlite/" + name);
  if (!in) throw std::runtime_error("cannot read the cases of " + name);
  std::vector<Case> cases;
  bool open = false;  // between "#" and the next blank line
  bool statement = false;
  int number = 0;
  for (std::string line; std::getline(in, line);) {
    ++number;
    if (line.empty()) {
      open = false;
      continue;
    }
    if (!open) {
      if (!line.starts_with("# ")) throw std::runtime_error(name + ": a case begins with \"# \"");
      cases.push_back({line.substr(2), {}, {}, {}, number});
      open = statement = true;
      continue;
    }
    Case& c = cases.back();
    if (line.starts_with("=> ")) {
      c.rewritten = line.substr(3);
      statement = false;
    } else if (line == "=>") {
      statement = false;
    } else if (statement) {
      c.sql += (c.sql.empty() ? "" : "\n") + line;
    } else {
      c.outcome.push_back(line);
    }
  }
  return cases;
}

}  // namespace pelm::ado::sqlite::test
