/// Capital and small letters, one code point to one.
///
/// Latin with every accent of European languages and Vietnamese, Greek, Cyrillic. A letter whose
/// counterpart is not one letter that maps back (ß, ı, İ, ſ, µ) stays as it is.
#pragma once

namespace pelm::text {

char32_t upper_letter(char32_t c) noexcept;
char32_t lower_letter(char32_t c) noexcept;

}  // namespace pelm::text
