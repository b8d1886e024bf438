/// The sources of the database objects' own errors, and texts in the language of messages.
#pragma once

#include <string>
#include <string_view>

#include "pelm/error.h"

namespace pelm::ado {

inline constexpr std::string_view kConnectionSource = "ADODB.Connection";
inline constexpr std::string_view kCommandSource = "ADODB.Command";
inline constexpr std::string_view kRecordsetSource = "ADODB.Recordset";
inline constexpr std::string_view kFieldsSource = "ADODB.Fields";
inline constexpr std::string_view kFieldSource = "ADODB.Field";

/// The text of the current message language.
inline std::string in_language(std::string_view portuguese, std::string_view english) {
  return std::string(message_language() == MessageLanguage::Portuguese ? portuguese : english);
}

}  // namespace pelm::ado
