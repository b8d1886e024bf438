/// How the embedded database compares texts: as the servers that pages were written for do.
///
/// PELM: without case, with accents, blanks at the end of no account ("João " = "JOÃO", but not
/// "Joao"); in order a letter stands beside its accented forms. PELM_AI: without accents too.
#pragma once

#include <string_view>

struct sqlite3;

namespace pelm::ado::sqlite {

inline constexpr const char* kCollation = "PELM";
inline constexpr const char* kAccentBlindCollation = "PELM_AI";

/// Negative, 0 or positive.
int compare_texts(std::string_view a, std::string_view b) noexcept;
int compare_texts_accent_blind(std::string_view a, std::string_view b) noexcept;

/// The pattern language of LIKE: % any text, _ one character, [a-f] and [^a-f] one of a set;
/// without case. `escape` is 0 when there is none.
bool like(std::string_view pattern, std::string_view text, char32_t escape) noexcept;

/// Where `pattern` first stands in `text` without case, from byte `from`; npos when nowhere.
/// `matched` receives its length in bytes there.
std::size_t find_case_blind(std::string_view text, std::string_view pattern, std::size_t from,
                            std::size_t& matched) noexcept;

void register_collations(sqlite3* db);

}  // namespace pelm::ado::sqlite
