// Between UTF-8 and UTF-16.
#include "platform/ado/odbc/wide_text.h"

#include "platform/value/utf8.h"

namespace pelm::ado::odbc {
namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr char32_t kFirstBeyond = 0x10000;
constexpr char32_t kHighHalf = 0xD800;
constexpr char32_t kLowHalf = 0xDC00;
constexpr char32_t kAfterHalves = 0xE000;

bool is_high(char16_t unit) { return unit >= kHighHalf && unit < kLowHalf; }
bool is_low(char16_t unit) { return unit >= kLowHalf && unit < kAfterHalves; }

}  // namespace

WideText::WideText(std::string_view utf8) {
  units_.reserve(utf8.size());
  for (std::size_t at = 0; at < utf8.size();) {
    const text::Character c = text::character_at(utf8, at);
    at += c.size;
    const char32_t code = c.valid ? c.code : kReplacement;
    if (code < kFirstBeyond) {
      units_ += static_cast<char16_t>(code);
    } else {
      units_ += static_cast<char16_t>(kHighHalf + ((code - kFirstBeyond) >> 10U));
      units_ += static_cast<char16_t>(kLowHalf + (code & 0x3FFU));
    }
  }
}

std::string utf8(std::u16string_view units) {
  std::string out;
  out.reserve(units.size());
  for (std::size_t i = 0; i < units.size(); ++i) {
    const char16_t unit = units[i];
    if (is_high(unit) && i + 1 < units.size() && is_low(units[i + 1])) {
      ++i;
      text::append_character(
          out, kFirstBeyond + ((char32_t{unit} - kHighHalf) << 10U) + (units[i] - kLowHalf));
    } else {
      text::append_character(out, is_high(unit) || is_low(unit) ? kReplacement : unit);
    }
  }
  return out;
}

}  // namespace pelm::ado::odbc
