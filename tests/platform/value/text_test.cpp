// Text by characters, invalid bytes included.
#include "platform/value/text.h"

#include <gtest/gtest.h>

#include <random>

#include "platform/value/case_map.h"
#include "platform/value/expect_error.h"
#include "platform/value/utf8.h"

namespace pelm::text {
namespace {

constexpr std::string_view kMixed = "Ação é João € 😀 fim";  // 1, 2, 3 and 4 bytes a character

TEST(Length, CountsCharacters) {
  EXPECT_EQ(length(""), 0U);
  EXPECT_EQ(length("abc"), 3U);
  EXPECT_EQ(length("coração"), 7U);
  EXPECT_EQ(length(kMixed), 19U);
  EXPECT_EQ(length(std::string_view("a\0b", 3)), 3U);
}

TEST(Length, FindsTheOneAccentWhereverItStands) {
  for (std::size_t before = 0; before < 40; ++before) {
    for (std::size_t after = 0; after < 20; ++after) {
      const std::string s = std::string(before, 'x') + "é" + std::string(after, 'y');
      EXPECT_EQ(length(s), before + 1 + after);
    }
  }
}

TEST(Length, CountsEachByteThatIsNoCharacterAsOne) {
  EXPECT_EQ(length("\xE9"), 1U);              // é of another code page
  EXPECT_EQ(length("a\xE7\xE3o"), 4U);        // "ação" of another code page
  EXPECT_EQ(length("\x80\xBF"), 2U);          // continuations alone
  EXPECT_EQ(length("\xE2\x82"), 2U);          // a cut "€"
  EXPECT_EQ(length("\xE2\x82\xC3\xA9"), 3U);  // a cut "€", then "é"
  EXPECT_EQ(length("\xC0\x80"), 2U);          // overlong
  EXPECT_EQ(length("\xE0\x80\x80"), 3U);      // overlong
  EXPECT_EQ(length("\xF0\x80\x80\x80"), 4U);  // overlong
  EXPECT_EQ(length("\xED\xA0\x80"), 3U);      // a surrogate
  EXPECT_EQ(length("\xF4\x90\x80\x80"), 4U);  // past U+10FFFF
  EXPECT_EQ(length("\xF5\x80\x80\x80"), 4U);  // no lead byte
  EXPECT_EQ(length("\xF4\x8F\xBF\xBF"), 1U);  // U+10FFFF
}

TEST(Cuts, TakeWholeCharacters) {
  EXPECT_EQ(left("Ação", 2), "Aç");
  EXPECT_EQ(right("Ação", 2), "ão");
  EXPECT_EQ(mid("Ação", 2, 2), "çã");
  EXPECT_EQ(mid("Ação", 3), "ão");
  EXPECT_EQ(left(kMixed, 0), "");
  EXPECT_EQ(right(kMixed, 0), "");
  EXPECT_EQ(left(kMixed, 1000), kMixed);
  EXPECT_EQ(right(kMixed, 1000), kMixed);
  EXPECT_EQ(mid(kMixed, 1000), "");
  EXPECT_EQ(mid(kMixed, 15, 1), "😀");
}

TEST(Cuts, PutTogetherAreTheWhole) {
  const std::string whole = std::string(kMixed) + "\xE9\xE2\x82 long plain tail of letters";
  const auto total = static_cast<std::int64_t>(length(whole));
  for (std::int64_t n = 0; n <= total; ++n) {
    EXPECT_EQ(left(whole, n) + right(whole, total - n), whole);
    EXPECT_EQ(left(whole, n) + mid(whole, n + 1), whole);
    EXPECT_EQ(length(left(whole, n)), static_cast<std::size_t>(n));
  }
}

TEST(Cuts, BytesThatAreNoCharacterPassThrough) {
  EXPECT_EQ(left("\xE9t\xE9", 2), "\xE9t");
  EXPECT_EQ(right("\xE9t\xE9", 1), "\xE9");
  EXPECT_EQ(mid("\xE2\x82x", 2, 1), "\x82");
}

TEST(Cuts, RaiseForNegativeCountsAndEarlyStarts) {
  EXPECT_ERROR(5, left("a", -1));
  EXPECT_ERROR(5, right("a", -1));
  EXPECT_ERROR(5, mid("a", 0));
  EXPECT_ERROR(5, mid("a", 0, 1));
  EXPECT_ERROR(5, mid("a", 1, -1));
  EXPECT_ERROR(5, mid("", 9, -1));
  EXPECT_EQ(mid("ação", 2, INT64_MAX), "ção");
  EXPECT_EQ(mid("ação", INT64_MAX, INT64_MAX), "");
}

TEST(Instr, AnswersInCharacters) {
  EXPECT_EQ(instr(1, kMixed, "João"), 8);
  EXPECT_EQ(instr(1, kMixed, "😀"), 15);
  EXPECT_EQ(instr(16, kMixed, "😀"), 0);
  EXPECT_EQ(instr(4, "ãoãoão", "ão"), 5);
  EXPECT_EQ(instr(3, "ãoãoão", "ão"), 3);
  EXPECT_EQ(instr(1, "aab", "ab"), 2);
  EXPECT_EQ(instr(INT64_MAX, "abc", "a"), 0);
}

TEST(Instr, CaseBlindKnowsAccents) {
  EXPECT_EQ(instr(1, kMixed, "JOÃO"), 0);
  EXPECT_EQ(instr(1, kMixed, "JOÃO", Compare::CaseBlind), 8);
  EXPECT_EQ(instr(1, "CORAÇÃO", "ção", Compare::CaseBlind), 5);
  EXPECT_EQ(instr(1, "cão", "cao", Compare::CaseBlind), 0);
}

TEST(Instr, NeverMatchesTheInsideOfACharacter) {
  EXPECT_EQ(instr(1, "é", "\xA9"), 0);
  EXPECT_EQ(instr(1, "é\xA9", "\xA9"), 2);
  EXPECT_EQ(instr(1, "é", "\xC3"), 0);
  EXPECT_EQ(instr(1, "é\xC3x", "\xC3"), 2);
  EXPECT_EQ(replace_all("é\xA9", "\xA9", "?"), "é?");
}

TEST(Case, MapsLettersWithAccents) {
  EXPECT_EQ(upper("coração, ÿ ŷ ž λόγος мир ạ"), "CORAÇÃO, Ÿ Ŷ Ž ΛΌΓΟς МИР Ạ");
  EXPECT_EQ(lower("CORAÇÃO, Ÿ Ŷ Ž ΛΌΓΟΣ МИР Ạ"), "coração, ÿ ŷ ž λόγοσ мир ạ");
}

TEST(Case, LeavesLettersWithoutALetterForLetterCounterpart) {
  for (const char* s : {"ß", "ı", "İ", "ſ", "ŉ", "ĸ", "µ", "ª", "º", "×", "÷", "€", "😀", "日"}) {
    EXPECT_EQ(upper(s), s);
    EXPECT_EQ(lower(s), s);
  }
}

TEST(Case, LeavesBytesThatAreNoCharacter) {
  EXPECT_EQ(upper("a\xE9z\xE2\x82"), "A\xE9Z\xE2\x82");
  EXPECT_EQ(lower("A\xC9Z"), "a\xC9z");
}

TEST(Case, EveryPairMapsThereAndBack) {
  int capitals = 0;
  int wrong = 0;
  for (char32_t c = 0; c <= 0x10FFFF; ++c) {
    const char32_t small = lower_letter(c);
    const char32_t capital = upper_letter(c);
    const bool either = small == c || capital == c;  // a small letter or a capital, not both
    const bool back =
        (small == c || upper_letter(small) == c) && (capital == c || lower_letter(capital) == c);
    wrong += either && back ? 0 : 1;
    capitals += small == c ? 0 : 1;
  }
  EXPECT_EQ(wrong, 0);
  EXPECT_EQ(capitals, 471);
}

TEST(EqualCaseBlind, ComparesByCharacter) {
  EXPECT_TRUE(equal_case_blind("", ""));
  EXPECT_TRUE(equal_case_blind("MARÇO", "março"));
  EXPECT_FALSE(equal_case_blind("marco", "março"));
  EXPECT_FALSE(equal_case_blind("março", "març"));
  EXPECT_FALSE(equal_case_blind("març", "março"));
  EXPECT_TRUE(equal_case_blind("\xE9", "\xE9"));
  EXPECT_FALSE(equal_case_blind("\xE9", "é"));  // the byte E9 is not U+00E9
  EXPECT_FALSE(equal_case_blind("\xE9", "\xC9"));
}

TEST(Trim, TakesBlanksOnly) {
  EXPECT_EQ(trim("  a b  "), "a b");
  EXPECT_EQ(trim("    "), "");
  EXPECT_EQ(trim(" \t a\n "), "\t a\n");
}

TEST(ReplaceAll, GoesLeftToRightOnce) {
  EXPECT_EQ(replace_all("aaa", "aa", "b"), "ba");
  EXPECT_EQ(replace_all("a.b.c", ".", ".."), "a..b..c");
  EXPECT_EQ(replace_all("ação", "ã", "a"), "açao");
  EXPECT_EQ(replace_all("abc", "", "x"), "abc");
  EXPECT_EQ(replace_all("", "a", "x"), "");
  EXPECT_EQ(replace_all("abcabc", "abc", ""), "");
  EXPECT_EQ(replace_all("abc", "ABC", "x"), "abc");
}

TEST(Text, AnyBytesCountCutAndMapAlike) {
  std::mt19937 random(2008);  // the same texts every run
  for (int i = 0; i < 20000; ++i) {
    std::string s;
    for (auto n = random() % 24; n > 0; --n) {
      s += static_cast<char>(random() % 2 == 0 ? 'a' + random() % 26 : random() % 256);
    }
    const auto total = static_cast<std::int64_t>(length(s));
    std::string one_by_one;
    for (std::int64_t n = 1; n <= total; ++n) one_by_one += mid(s, n, 1);
    ASSERT_EQ(one_by_one, s);
    ASSERT_EQ(length(upper(s)), length(s));
    ASSERT_EQ(upper(lower(upper(s))), upper(s));
    ASSERT_TRUE(equal_case_blind(s, upper(s)));
    ASSERT_EQ(instr(1, s, s), total == 0 ? 0 : 1);
  }
}

TEST(Utf8, AppendsWhatItReads) {
  for (const char32_t c : {U'a', U'\x7F', U'\x80', U'é', U'\x7FF', U'\x800', U'€', U'\xFFFF',
                           U'\x10000', U'😀', U'\x10FFFF'}) {
    std::string s;
    append_character(s, c);
    const Character read = character_at(s, 0);
    EXPECT_TRUE(read.valid);
    EXPECT_EQ(read.code, c);
    EXPECT_EQ(read.size, s.size());
  }
}

// It looks at many bytes at a time: whatever the length and the place, as one at a time would.
TEST(AsciiPrefix, EndsAtTheFirstByteThatIsNotAscii) {
  for (std::size_t size = 0; size <= 100; ++size) {
    const std::string ascii(size, '\x7F');
    EXPECT_EQ(ascii_prefix(ascii), size);
    for (std::size_t first = 0; first < size; ++first) {
      std::string s = ascii;
      s[first] = '\x80';
      EXPECT_EQ(ascii_prefix(s), first) << size;
      s.back() = '\xFF';
      EXPECT_EQ(ascii_prefix(s), first) << size;
      EXPECT_EQ(ascii_prefix(std::string_view(s).substr(0, first)), first) << size;
    }
  }
}

}  // namespace
}  // namespace pelm::text
