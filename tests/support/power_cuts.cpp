// Keeps, for each file, what was synchronised and what was written since.
#include "support/power_cuts.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <utility>

namespace pelm::test {
namespace {

using Kind = FileCall::Kind;

constexpr std::size_t kSector = 512;

std::string content_of(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

PowerCuts& PowerCuts::installed() {
  static PowerCuts cuts;
  watch_files(cuts);
  return cuts;
}

void PowerCuts::watch() {
  const std::lock_guard guard(mutex_);
  for (auto& [path, file] : files_) file = {content_of(path), {}};
  images_.clear();
  watching_ = true;
}

std::size_t PowerCuts::taken() const {
  const std::lock_guard guard(mutex_);
  return images_.size();
}

std::vector<DiskImage> PowerCuts::stop() {
  const std::lock_guard guard(mutex_);
  take_images();
  watching_ = false;
  return std::exchange(images_, {});
}

int PowerCuts::before(const FileCall& call) {
  if (call.path.empty()) return 0;  // a temporary file: gone with the program
  const std::lock_guard guard(mutex_);
  if (call.kind == Kind::Open) files_.try_emplace(std::string(call.path));
  const auto found = files_.find(call.path);
  if (found == files_.end()) return 0;
  if (!watching_) {
    if (call.kind == Kind::Delete) files_.erase(found);
    return 0;
  }
  File& file = found->second;
  switch (call.kind) {
    case Kind::Write:
      take_images();
      file.since.push_back({static_cast<std::size_t>(call.at),
                            std::string(call.data.begin(), call.data.end()), false});
      break;
    case Kind::Truncate:
      take_images();
      file.since.push_back({static_cast<std::size_t>(call.at), {}, true});
      break;
    case Kind::Sync:
      take_images();
      for (const Change& change : file.since) make(change, file.synchronised);
      file.since.clear();
      break;
    case Kind::Delete:
      take_images();
      files_.erase(found);
      break;
    default:
      break;
  }
  return 0;
}

void PowerCuts::make(const Change& change, std::string& content) {
  if (change.truncates) {
    content.resize(change.at);
    return;
  }
  content.resize(std::max(content.size(), change.at + change.data.size()));
  std::ranges::copy(change.data, content.begin() + static_cast<std::ptrdiff_t>(change.at));
}

void PowerCuts::take_images() {
  DiskImage nothing;
  DiskImage something;
  for (const auto& [path, file] : files_) {
    nothing[path] = file.synchronised;
    std::string& content = something[path] = file.synchronised;
    for (const Change& change : file.since) {
      if (chance_() % 2 == 0) make(what_chance_leaves(change), content);
    }
  }
  images_.push_back(std::move(nothing));
  images_.push_back(std::move(something));
}

/// The change, or the first sectors of its data.
PowerCuts::Change PowerCuts::what_chance_leaves(Change change) {
  const std::size_t sectors = change.data.size() / kSector;
  if (sectors > 1 && chance_() % 2 == 0) {
    change.data.resize(kSector * (1 + chance_() % (sectors - 1)));
  }
  return change;
}

}  // namespace pelm::test
