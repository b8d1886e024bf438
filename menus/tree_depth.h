/// How deep a walk through the options has gone: a tree that comes back to itself must end with
/// an error and not with the process.
#pragma once

#include "pelm/error.h"

namespace pelm::menus {

/// Levels of options that a walk goes down, or up.
inline constexpr int kDeepestLevel = 1000;

/// One level of a walk, for its lifetime. Raises 28 past the deepest.
class TreeLevel {
 public:
  explicit TreeLevel(int& depth) : depth_(depth) {
    if (depth_ == kDeepestLevel) raise_error(error_number::kOutOfStackSpace);
    ++depth_;
  }
  TreeLevel(const TreeLevel&) = delete;
  TreeLevel& operator=(const TreeLevel&) = delete;
  ~TreeLevel() { --depth_; }

 private:
  int& depth_;
};

}  // namespace pelm::menus
