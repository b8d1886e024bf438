// A suffix without a media type is not served: what goes out is listed, not what stays.
#include "host/static_files.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>

#include "platform/value/text.h"

namespace pelm::host {
namespace {

constexpr std::array<std::pair<std::string_view, std::string_view>, 30> kMediaTypes = {{
    {".html", "text/html; charset=utf-8"},
    {".htm", "text/html; charset=utf-8"},
    {".css", "text/css; charset=utf-8"},
    {".js", "text/javascript; charset=utf-8"},
    {".mjs", "text/javascript; charset=utf-8"},
    {".json", "application/json"},
    {".map", "application/json"},
    {".webmanifest", "application/manifest+json"},
    {".txt", "text/plain; charset=utf-8"},
    {".csv", "text/csv; charset=utf-8"},
    {".xml", "application/xml"},
    {".svg", "image/svg+xml"},
    {".png", "image/png"},
    {".jpg", "image/jpeg"},
    {".jpeg", "image/jpeg"},
    {".gif", "image/gif"},
    {".webp", "image/webp"},
    {".avif", "image/avif"},
    {".bmp", "image/bmp"},
    {".ico", "image/x-icon"},
    {".woff", "font/woff"},
    {".woff2", "font/woff2"},
    {".ttf", "font/ttf"},
    {".otf", "font/otf"},
    {".pdf", "application/pdf"},
    {".zip", "application/zip"},
    {".mp3", "audio/mpeg"},
    {".mp4", "video/mp4"},
    {".webm", "video/webm"},
    {".wasm", "application/wasm"},
}};

std::string hexadecimal(std::uint64_t number) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text;
  do {
    text.insert(text.begin(), kDigits[number & 0xFU]);
    number >>= 4U;
  } while (number != 0);
  return text;
}

constexpr std::array<std::string_view, 7> kDays = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
constexpr std::array<std::string_view, 12> kMonths = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                      "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

std::string two_digits(int number) {
  return {static_cast<char>('0' + number / 10), static_cast<char>('0' + number % 10)};
}

/// A number that takes all of `text`; nothing for anything else.
std::optional<int> number_of(std::string_view text) {
  int number = 0;
  for (const char c : text) {
    if (c < '0' || c > '9') return std::nullopt;
    number = number * 10 + (c - '0');
  }
  return number;
}

}  // namespace

std::string http_date(std::time_t time) {
  std::tm t = {};
  gmtime_r(&time, &t);
  return std::string(kDays[static_cast<std::size_t>(t.tm_wday)]) + ", " + two_digits(t.tm_mday) +
         " " + std::string(kMonths[static_cast<std::size_t>(t.tm_mon)]) + " " +
         std::to_string(t.tm_year + 1900) + " " + two_digits(t.tm_hour) + ":" +
         two_digits(t.tm_min) + ":" + two_digits(t.tm_sec) + " GMT";
}

std::optional<std::time_t> parse_http_date(std::string_view text) {
  constexpr std::string_view kShape = "Sun, 06 Nov 1994 08:49:37 GMT";
  if (text.size() != kShape.size() || !text.ends_with(" GMT")) return std::nullopt;
  const auto* const month = std::find(kMonths.begin(), kMonths.end(), text.substr(8, 3));
  const std::array<std::optional<int>, 5> numbers = {
      number_of(text.substr(5, 2)), number_of(text.substr(12, 4)), number_of(text.substr(17, 2)),
      number_of(text.substr(20, 2)), number_of(text.substr(23, 2))};
  const auto present = [](const std::optional<int>& number) { return number.has_value(); };
  if (month == kMonths.end() || !std::all_of(numbers.begin(), numbers.end(), present)) {
    return std::nullopt;
  }
  std::tm t = {};
  t.tm_mday = *numbers[0];
  t.tm_mon = static_cast<int>(month - kMonths.begin());
  t.tm_year = *numbers[1] - 1900;
  t.tm_hour = *numbers[2];
  t.tm_min = *numbers[3];
  t.tm_sec = *numbers[4];
  return timegm(&t);
}

bool StaticFile::is_known_to(std::string_view if_none_match,
                             std::string_view if_modified_since) const {
  if (!if_none_match.empty()) {
    return if_none_match == "*" || if_none_match.find(etag) != std::string_view::npos;
  }
  const auto since = parse_http_date(if_modified_since);
  return since && *parse_http_date(last_modified) <= *since;
}

StaticFiles::StaticFiles(page::SiteRoot root,
                         const std::vector<std::pair<std::string, std::string>>& more_types)
    : root_(std::move(root)) {
  for (const auto& [suffix, type] : more_types) {
    types_.emplace_back(suffix.starts_with('.') ? suffix : "." + suffix, type);
  }
  for (const auto& [suffix, type] : kMediaTypes) types_.emplace_back(suffix, type);
}

std::optional<StaticFile> StaticFiles::find(const std::string& site_path) const {
  const std::string suffix = std::filesystem::path(site_path).extension().string();
  const auto type = std::find_if(types_.begin(), types_.end(), [&](const auto& pair) {
    return text::equal_case_blind(pair.first, suffix);
  });
  if (type == types_.end()) return std::nullopt;
  const auto path = page::resolve_in_site(root_, "/", site_path);
  struct stat status = {};
  if (!path || ::stat(path->c_str(), &status) != 0 || !S_ISREG(status.st_mode)) {
    return std::nullopt;
  }
  StaticFile file;
  file.path = *path;
  file.media_type = type->second;
  file.size = static_cast<std::uintmax_t>(status.st_size);
  file.etag = "\"" + hexadecimal(static_cast<std::uint64_t>(status.st_mtim.tv_sec)) + "-" +
              hexadecimal(static_cast<std::uint64_t>(status.st_mtim.tv_nsec)) + "-" +
              hexadecimal(file.size) + "\"";
  file.last_modified = http_date(status.st_mtim.tv_sec);
  return file;
}

}  // namespace pelm::host
