// Pages with their includes, put together: the first file is the page, the others it may include.
#include <map>

#include "fuzz/fuzzing.h"
#include "host/page_source.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace pelm::host;
  std::map<std::string, std::string> files;
  std::string_view left = pelm::fuzz::text_of(data, size);
  for (const auto* name : {"/p.page", "/a.inc", "/b.inc"}) {
    const std::size_t end = left.find('\0');
    files[name] = left.substr(0, end);
    left = end == std::string_view::npos ? std::string_view() : left.substr(end + 1);
  }
  PageFiles site;
  site.read = [&](const std::string& path) {
    const auto found = files.find(path);
    if (found == files.end()) throw PageSyntaxError({}, "não há " + path);
    return found->second;
  };
  site.resolve = [](std::string_view, std::string_view name, bool) {
    return std::string(name.starts_with('/') ? "" : "/") + std::string(name);
  };
  try {
    const PageSource page = read_page(site, "/p.page");
    int lines = 2;
    for (const char c : page.script) lines += c == '\n' ? 1 : 0;
    for (int line = 0; line <= lines; ++line) {
      const SourcePlace place = page.place_of(line);
      pelm::fuzz::require(place.line >= 0 && !place.file.empty());
    }
  } catch (const PageSyntaxError& error) {
    pelm::fuzz::require(!error.place().file.empty());
  }
  return 0;
}
