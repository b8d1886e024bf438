// A text whose translation never ends, in a process of its own.
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <string>

#include "data/sql_translation.h"

namespace pelm::data {
namespace {

// A child that translates `sql`; it writes one byte before and one after.
class Translator {
 public:
  explicit Translator(std::string sql) {
    int ends[2] = {-1, -1};
    if (::pipe(ends) != 0) return;
    read_end_ = ends[0];
    child_ = ::fork();
    if (child_ == 0) {
      const auto tell = [&] { return ::write(ends[1], "x", 1) == 1; };
      bool told = tell();
      translate_sql(sql, "Oracle");
      told = told && tell();
      ::_exit(told ? 0 : 1);
    }
    ::close(ends[1]);
  }
  Translator(const Translator&) = delete;
  Translator& operator=(const Translator&) = delete;
  ~Translator() {
    if (child_ > 0) {
      ::kill(child_, SIGKILL);
      ::waitpid(child_, nullptr, 0);
    }
    if (read_end_ >= 0) ::close(read_end_);
  }

  bool started() const { return child_ > 0; }

  /// Whether the child writes its next byte within `milliseconds`; -1 waits for ever.
  bool tells(int milliseconds) const {
    pollfd waiting{read_end_, POLLIN, 0};
    char byte = 0;
    return ::poll(&waiting, 1, milliseconds) == 1 && ::read(read_end_, &byte, 1) == 1;
  }

  bool runs() const { return ::waitpid(child_, nullptr, WNOHANG) == 0; }

 private:
  int read_end_ = -1;
  pid_t child_ = -1;
};

TEST(EndlessTranslation, DoesNotReturn) {
  const Translator translator("select getdate() from t");
  ASSERT_TRUE(translator.started());
  ASSERT_TRUE(translator.tells(-1)) << "the translation begins";
  EXPECT_FALSE(translator.tells(1'000)) << "and does not end";
  EXPECT_TRUE(translator.runs());
}

TEST(EndlessTranslation, IsToldFromOneThatEnds) {
  const Translator translator("select f(getdate()) from t");
  ASSERT_TRUE(translator.started());
  EXPECT_TRUE(translator.tells(-1));
  EXPECT_TRUE(translator.tells(-1));
}

}  // namespace
}  // namespace pelm::data
