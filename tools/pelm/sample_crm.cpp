// Looks for the sample upwards from the program, then where the program was built from.
#include "tools/pelm/sample_crm.h"

#include <vector>

#include "tools/pelm/commands.h"

namespace pelm::tool {
namespace {

namespace fs = std::filesystem;

/// From bin/ of an installation, and from the root of the tree.
constexpr const char* kPlaces[] = {"share/pelm/crm", "examples/crm"};

std::vector<fs::path> candidates() {
  std::vector<fs::path> found;
  std::error_code failure;
  fs::path folder = fs::read_symlink("/proc/self/exe", failure).parent_path();
  for (; folder.has_relative_path(); folder = folder.parent_path()) {
    for (const char* place : kPlaces) found.push_back(folder / place);
  }
  found.emplace_back(PELM_SOURCE_SAMPLE);  // a build folder outside the tree
  return found;
}

}  // namespace

SampleCrm find_sample_crm() {
  for (const fs::path& folder : candidates()) {
    std::error_code failure;
    if (fs::is_directory(folder / "site", failure)) return {folder / "site", folder / "seed.sql"};
  }
  throw UserError("the sample CRM is not where it was installed; name a site with --root");
}

}  // namespace pelm::tool
