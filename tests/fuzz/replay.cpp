// Gives the files of the folders and files that it is told of to a fuzzing target, one by one: the
// corpus in an ordinary build, or an input that a fuzzer has found.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "fuzz/fuzzing.h"

namespace {

void replay(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), {}};
  // A piece of memory of its own size, so that a sanitizer sees a step beyond it.
  const std::vector<std::uint8_t> input(bytes.begin(), bytes.end());
  LLVMFuzzerTestOneInput(input.data(), input.size());
}

}  // namespace

int main(int count, char** names) {
  std::vector<std::filesystem::path> files;
  for (int i = 1; i < count; ++i) {
    if (!std::filesystem::is_directory(names[i])) {
      files.emplace_back(names[i]);
      continue;
    }
    for (const auto& entry : std::filesystem::directory_iterator(names[i])) {
      files.push_back(entry.path());
    }
  }
  std::sort(files.begin(), files.end());
  for (const auto& file : files) {
    std::fprintf(stderr, "%s\n", file.c_str());  // the last one named is the one that fails
    replay(file);
  }
  if (files.empty()) std::fprintf(stderr, "no inputs; give files or folders\n");
  return files.empty() ? 1 : 0;
}
