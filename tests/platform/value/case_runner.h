/// Which function of the platform each table of cases calls, and how it notes the result.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace pelm::cases {

/// How one column of a table's rows is come by.
struct Evaluation {
  std::string_view file;      ///< Without ".tsv".
  std::string_view function;  ///< As the table's first column names it.
  std::string_view column;    ///< The column that holds the result.
  /// The result in the table's own notation; throws pelm::Error where the platform raises one
  /// and any other exception for an input that it cannot parse.
  std::string (*result)(const std::string& input);
  /// The notation in which two equal results have the same letters; null for the results as is.
  std::string (*comparable)(const std::string& result) = nullptr;
};

std::span<const Evaluation> evaluations();

/// A row that no function of this folder can be asked: it is about an operator of the page
/// language, another function of it, or a value that the function's C++ type keeps out.
struct Inapplicable {
  std::string_view file;
  std::string_view function;
  std::string_view input;
};

std::span<const Inapplicable> inapplicable_rows();

}  // namespace pelm::cases
