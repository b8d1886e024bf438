/// The subcommands of the program. Each adds itself to the command line with its options and help;
/// when it is the one that was asked for, it runs and leaves the exit status.
#pragma once

#include <CLI/CLI.hpp>
#include <stdexcept>

namespace pelm::tool {

/// What the shell sees.
enum ExitStatus : int {
  kDone = 0,
  kFailed = 1,   ///< it was tried and did not work
  kRefused = 2,  ///< what was asked for cannot be done: wrong options, a text that cannot be taken
};

/// A failure whose text tells a user what, where and what to do.
class UserError : public std::runtime_error {
 public:
  explicit UserError(const std::string& text, ExitStatus status = kFailed)
      : std::runtime_error(text), status_(status) {}
  ExitStatus status() const noexcept { return status_; }

 private:
  ExitStatus status_;
};

void add_serve(CLI::App& program, int& status);
void add_page(CLI::App& program, int& status);
void add_schema(CLI::App& program, int& status);
void add_translate(CLI::App& program, int& status);
void add_init(CLI::App& program, int& status);
void add_check(CLI::App& program, int& status);
void add_barcode(CLI::App& program, int& status);
void add_describe(CLI::App& program, int& status);

}  // namespace pelm::tool
