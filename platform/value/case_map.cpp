// Capital and small letters as ranges.
#include "platform/value/case_map.h"

namespace pelm::text {
namespace {

// Beyond ASCII. The capitals first, first + step … last; each one's small letter is `distance`
// further.
struct Capitals {
  char32_t first;
  char32_t last;
  int distance;
  char32_t step;
};

constexpr Capitals kCapitals[] = {
    {0x00C0, 0x00D6, 32, 1},    // À to Ö
    {0x00D8, 0x00DE, 32, 1},    // Ø to Þ
    {0x0100, 0x012E, 1, 2},     // Ā to Į
    {0x0132, 0x0136, 1, 2},     // Ĳ to Ķ
    {0x0139, 0x0147, 1, 2},     // Ĺ to Ň
    {0x014A, 0x0176, 1, 2},     // Ŋ to Ŷ
    {0x0178, 0x0178, -121, 1},  // Ÿ
    {0x0179, 0x017D, 1, 2},     // Ź to Ž
    {0x01A0, 0x01A0, 1, 1},     // Ơ
    {0x01AF, 0x01AF, 1, 1},     // Ư
    {0x01CD, 0x01DB, 1, 2},     // Ǎ to Ǜ
    {0x01DE, 0x01EE, 1, 2},     // Ǟ to Ǯ
    {0x01F4, 0x01F4, 1, 1},     // Ǵ
    {0x01F8, 0x021E, 1, 2},     // Ǹ to Ȟ
    {0x0222, 0x0232, 1, 2},     // Ȣ to Ȳ
    {0x0386, 0x0386, 38, 1},    // Ά
    {0x0388, 0x038A, 37, 1},    // Έ to Ί
    {0x038C, 0x038C, 64, 1},    // Ό
    {0x038E, 0x038F, 63, 1},    // Ύ, Ώ
    {0x0391, 0x03A1, 32, 1},    // Α to Ρ
    {0x03A3, 0x03AB, 32, 1},    // Σ to Ϋ
    {0x0400, 0x040F, 80, 1},    // Ѐ to Џ
    {0x0410, 0x042F, 32, 1},    // А to Я
    {0x0460, 0x0480, 1, 2},     // Ѡ to Ҁ
    {0x048A, 0x04BE, 1, 2},     // Ҋ to Ҿ
    {0x04C0, 0x04C0, 15, 1},    // Ӏ
    {0x04C1, 0x04CD, 1, 2},     // Ӂ to Ӎ
    {0x04D0, 0x052E, 1, 2},     // Ӑ to Ԯ
    {0x1E00, 0x1E94, 1, 2},     // Ḁ to Ẕ
    {0x1EA0, 0x1EFE, 1, 2},     // Ạ to Ỿ
};

constexpr bool holds(const Capitals& range, char32_t capital) {
  return capital >= range.first && capital <= range.last &&
         (capital - range.first) % range.step == 0;
}

constexpr char32_t moved(char32_t c, int distance) {
  return static_cast<char32_t>(static_cast<int>(c) + distance);
}

constexpr bool within(char32_t c, char32_t first, char32_t last) { return c >= first && c <= last; }

}  // namespace

char32_t upper_letter(char32_t c) noexcept {
  if (c < 0x80) return within(c, U'a', U'z') ? c - 32 : c;
  for (const Capitals& range : kCapitals) {
    const char32_t capital = moved(c, -range.distance);
    if (holds(range, capital)) return capital;
  }
  return c;
}

char32_t lower_letter(char32_t c) noexcept {
  if (c < 0x80) return within(c, U'A', U'Z') ? c + 32 : c;
  for (const Capitals& range : kCapitals) {
    if (holds(range, c)) return moved(c, range.distance);
  }
  return c;
}

}  // namespace pelm::text
