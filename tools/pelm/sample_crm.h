/// Where the sample CRM stands: beside an installed program, or in the tree that it was built from.
#pragma once

#include <filesystem>

namespace pelm::tool {

struct SampleCrm {
  std::filesystem::path site;  ///< its pages
  std::filesystem::path seed;  ///< SQL with its first items
};

/// Raises UserError when it is nowhere.
SampleCrm find_sample_crm();

}  // namespace pelm::tool
