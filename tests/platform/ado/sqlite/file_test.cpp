// Database files: missing, broken, guarded, locked, shared by sessions, threads and processes.
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <fstream>
#include <functional>
#include <future>
#include <set>
#include <thread>

#include "pelm/error.h"
#include "platform/ado/sqlite/scratch_database.h"
#include "platform/ado/sqlite/session.h"

namespace pelm::ado::sqlite::test {
namespace {

namespace fs = std::filesystem;
using Rows = std::vector<std::string>;

struct Raised {
  std::int32_t number = 0;
  std::string description;
};

Raised raised(const std::function<void()>& what) {
  try {
    what();
  } catch (const Error& e) {
    return {e.number(), e.description()};
  }
  return {};
}

// The superuser may write anywhere: such tests run as somebody else.
class Unprivileged {
 public:
  Unprivileged() { active_ = geteuid() != 0 || seteuid(kNobody) == 0; }
  Unprivileged(const Unprivileged&) = delete;
  Unprivileged& operator=(const Unprivileged&) = delete;
  ~Unprivileged() {
    if (getuid() == 0 && seteuid(0) != 0) std::abort();
  }
  bool active() const { return active_; }

 private:
  static constexpr uid_t kNobody = 65534;
  bool active_ = false;
};

class SqliteFile : public testing::Test {
 protected:
  std::unique_ptr<Session> open(const std::string& more = {},
                                ConnectModeEnum mode = adModeUnknown) {
    return open_session("Data Source=" + path_ + ";" + more, mode);
  }
  // A filled database; the log is emptied into the file, so that the file is all there is.
  void make() {
    fill(*open("Create=True"));
    ASSERT_FALSE(fs::exists(path_ + "-wal"));
  }
  TemporaryFolder folder_;
  std::string path_ = folder_.file("crm.db");
};

TEST_F(SqliteFile, IsNeverMadeInSilence) {
  const Raised e = raised([&] { open(); });
  EXPECT_EQ(error_number::kProviderFailure, e.number);
  EXPECT_NE(std::string::npos, e.description.find("unable to open database file: " + path_));
  EXPECT_NE(std::string::npos, e.description.find("Create=True"));
  EXPECT_FALSE(fs::exists(path_));
}

TEST_F(SqliteFile, IsMadeWhenAskedFor) {
  fill(*open("Create=True"));
  EXPECT_EQ((Rows{"7"}), rows_of(*open(), "select count(*) from item"));
}

TEST_F(SqliteFile, SaysWhyItCannotBeOpened) {
  EXPECT_NE(std::string::npos, raised([&] {
                                 open_session("Data Source=" + folder_.path().string());
                               }).description.find("it is a folder"));
  EXPECT_NE(std::string::npos,
            raised([&] {
              open_session("Data Source=" + folder_.file("nada/crm.db") + ";Create=True");
            }).description.find("the folder does not exist"));
}

TEST_F(SqliteFile, ThatIsNoDatabaseIsRefusedAtOnce) {
  std::ofstream(path_) << "This is not a database, and never was one. " << std::string(4096, 'x');
  const Raised e = raised([&] { open(); });
  EXPECT_EQ(error_number::kProviderFailure, e.number);
  EXPECT_EQ("file is not a database: " + path_, e.description);
}

TEST_F(SqliteFile, ThatIsDamagedRaisesAProviderError) {
  make();
  const auto size = fs::file_size(path_);
  {
    std::fstream file(path_, std::ios::in | std::ios::out | std::ios::binary);
    for (std::uintmax_t at = 4096; at + 64 < size; at += 512) {
      file.seekp(static_cast<std::streamoff>(at));
      file << std::string(64, '\xA5');
    }
  }
  const Raised e = raised([&] {
    const auto session = open();
    for (const char* table : {"item", "Pelm_Menu", "pelm_procedure", "chaveunica"}) {
      rows_of(*session, std::string("select * from ") + table);
    }
  });
  EXPECT_EQ(error_number::kProviderFailure, e.number) << e.description;
  EXPECT_NE(std::string::npos, e.description.find("malformed: " + path_)) << e.description;
}

TEST_F(SqliteFile, CutShortWhileOpenRaisesInsteadOfEndingTheProcess) {
  make();
  const auto session = open();
  rows_of(*session, "select top 1 oid from item");
  fs::resize_file(path_, 4096);
  const Raised e = raised([&] {
    for (const char* table : {"item", "Pelm_Menu", "chaveunica", "permissao"}) {
      rows_of(*session, std::string("select * from ") + table);
    }
  });
  EXPECT_EQ(error_number::kProviderFailure, e.number) << e.description;
}

TEST_F(SqliteFile, OpenedForReadingRefusesWrites) {
  make();
  for (const auto& session : {open("Mode=Read"), open({}, adModeRead)}) {
    EXPECT_EQ((Rows{"7"}), rows_of(*session, "select count(*) from item"));
    const Raised e = raised([&] { run(*session, "delete from item"); });
    EXPECT_EQ(error_number::kPermissionDenied, e.number);
    EXPECT_NE(std::string::npos, e.description.find("it was opened for reading only"));
    session->begin(adXactReadCommitted);
    EXPECT_EQ((Rows{"7"}), rows_of(*session, "select count(*) from item"));
    session->commit();
  }
}

TEST_F(SqliteFile, WithoutWritePermissionRefusesWritesAndSaysSo) {
  make();
  fs::permissions(folder_.path(), fs::perms::all);
  fs::permissions(path_, fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
  const Unprivileged user;
  if (!user.active()) GTEST_SKIP() << "cannot give up the superuser's rights";
  const auto session = open();
  EXPECT_EQ((Rows{"7"}), rows_of(*session, "select count(*) from item"));
  const Raised e = raised([&] { run(*session, "delete from item"); });
  EXPECT_EQ(error_number::kPermissionDenied, e.number);
  EXPECT_NE(std::string::npos, e.description.find(path_ + " (the file is not writable)"))
      << e.description;
}

TEST_F(SqliteFile, InAFolderWithoutWritePermissionSaysSo) {
  make();
  fs::permissions(path_, fs::perms::all);
  const auto closed = fs::perms::owner_read | fs::perms::owner_exec | fs::perms::group_read |
                      fs::perms::group_exec | fs::perms::others_read | fs::perms::others_exec;
  fs::permissions(folder_.path(), closed);
  Raised e;
  {
    const Unprivileged user;
    if (!user.active()) GTEST_SKIP() << "cannot give up the superuser's rights";
    e = raised([&] { rows_of(*open(), "select count(*) from item"); });
  }
  fs::permissions(folder_.path(), fs::perms::all);
  EXPECT_EQ(error_number::kPermissionDenied, e.number) << e.description;
  EXPECT_NE(std::string::npos, e.description.find(path_ + " (folder is not writable"))
      << e.description;
}

TEST_F(SqliteFile, ReplacedByAnotherIsNotServedFromAnIdleSession) {
  make();
  const auto session = open();
  EXPECT_TRUE(session->still_good());
  fs::copy_file(path_, folder_.file("copy.db"));
  fs::rename(folder_.file("copy.db"), path_);
  EXPECT_FALSE(session->still_good());
}

/// A transaction in a thread of its own that has written and stays open.
class WriterElsewhere {
 public:
  explicit WriterElsewhere(const std::function<std::unique_ptr<Session>()>& open)
      : thread_([this, open] {
          const auto session = open();
          session->begin(adXactReadCommitted);
          run(*session, "delete from item where oid = 8");
          has_written_.set_value();
          may_end_.get_future().wait();
          session->rollback();
        }) {
    has_written_.get_future().wait();
  }
  WriterElsewhere(const WriterElsewhere&) = delete;
  WriterElsewhere& operator=(const WriterElsewhere&) = delete;
  ~WriterElsewhere() { rollback(); }

  void rollback() {
    if (!thread_.joinable()) return;
    may_end_.set_value();
    thread_.join();
  }

 private:
  std::promise<void> has_written_;
  std::promise<void> may_end_;
  std::thread thread_;
};

TEST_F(SqliteFile, HeldByAWriterInAnotherThreadRaisesATimeOut) {
  make();
  WriterElsewhere holder([this] { return open(); });
  const auto waiter = open();
  waiter->command_timeout(1);
  Raised e = raised([&] { run(*waiter, "delete from item where oid = 9"); });
  EXPECT_EQ(error_number::kTimeout, e.number);
  EXPECT_NE(std::string::npos,
            e.description.find("database is locked: " + path_ +
                               " (others were writing for the whole time-out of 1 s)"))
      << e.description;
  e = raised([&] { waiter->begin(adXactSerializable); });
  EXPECT_EQ(error_number::kTimeout, e.number);
  waiter->begin(adXactReadCommitted);
  e = raised([&] { run(*waiter, "delete from item where oid = 9"); });
  EXPECT_EQ(error_number::kTimeout, e.number);
  EXPECT_EQ((Rows{"7"}), rows_of(*waiter, "select count(*) from item"));  // readers never wait
  holder.rollback();
  EXPECT_EQ(1, run(*waiter, "delete from item where oid = 9"));  // still in its transaction
  waiter->rollback();
  EXPECT_EQ((Rows{"7"}), rows_of(*waiter, "select count(*) from item"));
}

TEST_F(SqliteFile, HeldByATransactionOfTheSameThreadIsNotWaitedFor) {
  make();
  const auto holder = open();
  const auto waiter = open();
  waiter->command_timeout(0);  // for ever, if it waited
  const auto write = [&] { run(*waiter, "update item set nome = 'x' where oid = 9"); };
  const auto begin = [&] { waiter->begin(adXactSerializable); };
  for (const IsolationLevelEnum level : {adXactReadCommitted, adXactSerializable}) {
    holder->begin(level);
    run(*holder, "delete from item where oid = 8");
    for (const std::function<void()>& attempt : {std::function<void()>(write), {begin}}) {
      const Raised e = raised(attempt);
      EXPECT_EQ(error_number::kTimeout, e.number);
      EXPECT_EQ("database is locked: " + path_ +
                    " (a transaction that this thread has begun on another connection is writing "
                    "to it: end that one first, or work on its connection)",
                e.description);
    }
    EXPECT_EQ((Rows{"7"}), rows_of(*waiter, "select count(*) from item"));
    holder->rollback();
    write();
  }
}

TEST_F(SqliteFile, OfAThreadsOwnTransactionsThoseThatHoldNothingAreNoReasonToGiveUp) {
  make();
  const auto over = open();
  over->begin(adXactSerializable);
  over->commit();
  over->begin_reading();
  rows_of(*over, "select count(*) from item");
  const auto elsewhere = open_session("Data Source=" + folder_.file("outro.db") + ";Create=True");
  elsewhere->begin(adXactSerializable);
  WriterElsewhere holder([this] { return open(); });
  const auto waiter = open();
  waiter->command_timeout(1);
  const Raised e = raised([&] { run(*waiter, "delete from item where oid = 9"); });
  EXPECT_NE(std::string::npos, e.description.find("whole time-out of 1 s")) << e.description;
}

TEST_F(SqliteFile, ASessionThatWasGivenBackBelongsToNoThread) {
  make();
  const auto given_back = open();
  given_back->begin(adXactSerializable);
  given_back->commit();
  ASSERT_TRUE(given_back->reset());
  const auto waiter = open();
  waiter->command_timeout(0);
  std::promise<void> writing;
  std::thread next([&] {
    // A row that a statement gives back holds the lock for as long as the row is being read.
    const auto rows = given_back->execute("delete from item where oid = 8 returning oid", {});
    writing.set_value();
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  });
  writing.get_future().wait();
  EXPECT_EQ(1, run(*waiter, "delete from item where oid = 9"));
  next.join();
  EXPECT_EQ((Rows{"5"}), rows_of(*waiter, "select count(*) from item"));
}

TEST_F(SqliteFile, ATransactionThatHasOnlyReadKeepsNobodyFromWriting) {
  make();
  const auto reader = open();
  const auto writer = open();
  writer->command_timeout(1);
  reader->begin(adXactReadCommitted);
  EXPECT_EQ((Rows{"7"}), rows_of(*reader, "select count(*) from item"));
  EXPECT_EQ(1, run(*writer, "delete from item where oid = 8"));
  EXPECT_EQ((Rows{"6"}), rows_of(*reader, "select count(*) from item"));  // what is committed now
  EXPECT_EQ(1, run(*reader, "delete from item where oid = 9"));           // and may write after it
  EXPECT_EQ(error_number::kTimeout,
            raised([&] { run(*writer, "delete from item where oid = 10"); }).number);
  reader->rollback();
  EXPECT_EQ((Rows{"6"}), rows_of(*reader, "select count(*) from item"));
  EXPECT_EQ(1, run(*writer, "delete from item where oid = 9"));
}

TEST_F(SqliteFile, OnlyTheStricterLevelsLockBeforeTheFirstWrite) {
  make();
  const auto session = open();
  const auto writer = open();
  writer->command_timeout(1);
  for (const IsolationLevelEnum level :
       {adXactUnspecified, adXactChaos, adXactReadUncommitted, adXactReadCommitted}) {
    session->begin(level);
    EXPECT_EQ(1, run(*writer, "update item set nome = 'x' where oid = 8")) << level;
    session->commit();
  }
  for (const IsolationLevelEnum level : {adXactRepeatableRead, adXactSerializable}) {
    session->begin(level);
    EXPECT_EQ(error_number::kTimeout,
              raised([&] { run(*writer, "update item set nome = 'x' where oid = 8"); }).number)
        << level;
    session->rollback();
  }
}

TEST_F(SqliteFile, IsWaitedForUntilTheOtherWriterIsDone) {
  make();
  const auto holder = open();
  holder->begin(adXactReadCommitted);
  run(*holder, "delete from item where oid = 8");
  std::atomic<bool> waiting = false;
  std::thread other([&] {
    const auto session = open();
    waiting = true;
    run(*session, "delete from item where oid = 9");
  });
  while (!waiting) std::this_thread::yield();
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  holder->commit();
  other.join();
  EXPECT_EQ((Rows{"5"}), rows_of(*holder, "select count(*) from item"));
}

TEST_F(SqliteFile, ChangedByAnotherSessionIsSeenAtOnce) {
  make();
  const auto one = open();
  const auto two = open();
  EXPECT_EQ(3U, one->describe("rotulo")->size());
  EXPECT_EQ(3U, one->execute("select * from rotulo", {})->columns()->size());
  run(*two, "alter table rotulo add quando datetime");
  EXPECT_EQ(4U, one->describe("rotulo")->size());
  EXPECT_EQ(4U, one->execute("select * from rotulo", {})->columns()->size());
  run(*two, "update rotulo set quando = '5/3/2008'");
  EXPECT_EQ((Rows{"5"}), rows_of(*one, "select raplicativo from rotulo where quando = '5/3/2008'"));
  run(*two, "drop table rotulo");
  EXPECT_EQ(error_number::kNoTable, raised([&] { one->describe("rotulo"); }).number);
}

TEST_F(SqliteFile, ChangedByAnotherProgramIsSeenSoon) {
  make();
  const auto session = open();
  EXPECT_EQ(3U, session->describe("rotulo")->size());
  sqlite3* other = nullptr;  // not known to this program's sessions, as another program's would be
  ASSERT_EQ(SQLITE_OK, sqlite3_open(path_.c_str(), &other));
  EXPECT_EQ(SQLITE_OK, sqlite3_exec(other, "alter table rotulo add quando datetime", nullptr,
                                    nullptr, nullptr));
  sqlite3_close(other);
  std::this_thread::sleep_for(Catalog::kTrusted * 2);
  EXPECT_EQ(4U, session->describe("rotulo")->size());
}

TEST_F(SqliteFile, ChangedInATransactionIsSeenAtItsEnd) {
  make();
  const auto one = open();
  const auto two = open();
  two->begin(adXactReadCommitted);
  run(*two, "alter table rotulo add quando datetime");
  EXPECT_EQ(4U, two->describe("rotulo")->size());
  EXPECT_EQ(3U, one->describe("rotulo")->size());
  two->commit();
  EXPECT_EQ(4U, one->describe("rotulo")->size());
}

// The engine numbers its definitions, and gives the number of what was rolled back away again.
TEST_F(SqliteFile, ChangedAfterAChangeThatWasRolledBackIsSeenAsItIs) {
  make();
  const auto one = open();
  one->begin(adXactReadCommitted);
  run(*one, "alter table rotulo add quando datetime");
  EXPECT_EQ(3U, one->describe("rotulo")->find("quando"));
  one->rollback();
  run(*open(), "alter table rotulo add onde varchar(10)");
  EXPECT_EQ(3U, one->describe("rotulo")->find("onde"));
}

TEST_F(SqliteFile, TakesADateColumnThatCameLaterForADate) {
  make();
  const auto one = open();
  run(*one, "create table q (a int, quando varchar(30))");
  const std::string sql = "select a from q where quando = '5/3/2008'";
  EXPECT_EQ((Rows{}), rows_of(*one, sql));
  const auto two = open();
  run(*two,
      "drop table q create table q (a int, quando datetime) insert into q values (1, '5/3/2008')");
  rows_of(*one, sql);  // the engine prepares it anew; what was known of its columns is dropped
  EXPECT_EQ((Rows{"1"}), rows_of(*one, sql));
}

TEST_F(SqliteFile, ReadByManyThreadsAndWrittenByOthersStaysWhole) {
  make();
  constexpr int kWriters = 2, kReaders = 2, kRounds = 60;
  std::atomic<int> failures = 0;
  std::vector<std::thread> threads;
  for (int w = 0; w < kWriters; ++w) {
    threads.emplace_back([&, w] {
      try {
        const auto session = open("Synchronous=Off");
        for (int i = 0; i < kRounds; ++i) {
          const std::string oid = std::to_string(1000 + w * kRounds + i);
          session->begin(adXactReadCommitted);
          run(*session, "insert into item (oid, cid) values (" + oid + ", 1)");
          run(*session, "insert into excluido (oid, cid) values (" + oid + ", 1)");
          session->commit();
        }
      } catch (const Error&) {
        ++failures;
      }
    });
  }
  for (int r = 0; r < kReaders; ++r) {
    threads.emplace_back([&] {
      try {
        const auto session = open();
        for (int i = 0; i < kRounds; ++i) {
          const Rows both =
              rows_of(*session,
                      "select (select count(*) from item where cid = 1 and oid >= 1000) - "
                      "(select count(*) from excluido)");
          if (both != Rows{"0"}) ++failures;
        }
      } catch (const Error&) {
        ++failures;
      }
    });
  }
  for (std::thread& t : threads) t.join();
  EXPECT_EQ(0, failures);
  EXPECT_EQ((Rows{std::to_string(kWriters * kRounds)}),
            rows_of(*open(), "select count(*) from excluido"));
}

// What one process draws, written as lines of text to `out`.
int draw_ranges(const std::string& path, int ranges, const std::string& out) {
  try {
    const auto session = open_session("Data Source=" + path + ";Synchronous=Off");
    std::ofstream file(out);
    std::vector<ProcedureArgument> arguments(1);
    arguments[0].name = "@novooid";
    arguments[0].type = adInteger;
    arguments[0].direction = adParamOutput;
    for (int i = 0; i < ranges; ++i) {
      session->begin(adXactReadCommitted);
      session->call("atualoid", arguments);
      session->commit();
      file << arguments[0].value.long_value() << '\n';
    }
    return 0;
  } catch (const std::exception& e) {
    std::ofstream(out + ".error") << e.what();
    return 1;
  }
}

TEST_F(SqliteFile, GivesEveryProcessRangesOfItsOwn) {
  make();
  constexpr int kProcesses = 8, kRanges = 100, kDelta = 100, kFirst = 100000;
  std::vector<pid_t> children;
  for (int p = 0; p < kProcesses; ++p) {
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) _exit(draw_ranges(path_, kRanges, folder_.file("out" + std::to_string(p))));
    children.push_back(child);
  }
  for (const pid_t child : children) {
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  }
  std::set<int> drawn;
  for (int p = 0; p < kProcesses; ++p) {
    std::ifstream file(folder_.file("out" + std::to_string(p)));
    for (int last = 0; file >> last;) EXPECT_TRUE(drawn.insert(last).second) << last;
    std::ifstream error(folder_.file("out" + std::to_string(p) + ".error"));
    EXPECT_FALSE(error) << error.rdbuf();
  }
  EXPECT_EQ(static_cast<std::size_t>(kProcesses * kRanges), drawn.size());
  EXPECT_EQ(kFirst + kDelta, *drawn.begin());
  EXPECT_EQ(kFirst + kDelta * kProcesses * kRanges, *drawn.rbegin());
  const auto session = open();
  EXPECT_EQ((Rows{"'ok'"}), rows_of(*session, "pragma integrity_check"));
}

// A process that is killed leaves whole transactions behind or none of them.
TEST_F(SqliteFile, KeepsWhatAKilledProcessCommittedAndNothingElse) {
  make();
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    const auto session = open("Synchronous=Off");
    for (int i = 0;; ++i) {
      session->begin(adXactReadCommitted);
      run(*session, "insert into item (oid, cid) values (" + std::to_string(1000 + i) + ", 1)");
      run(*session, "insert into excluido (oid, cid) values (" + std::to_string(1000 + i) + ", 1)");
      session->commit();
    }
  }
  const auto session = open();
  while (rows_of(*session, "select count(*) from excluido") < Rows{"20"}) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  EXPECT_EQ((Rows{"0"}), rows_of(*session,
                                 "select (select count(*) from item where oid >= 1000) - (select "
                                 "count(*) from excluido)"));
  EXPECT_EQ((Rows{"'ok'"}), rows_of(*session, "pragma integrity_check"));
  EXPECT_EQ(1, run(*session, "insert into excluido (oid, cid) values (1, 1)"));
}

}  // namespace
}  // namespace pelm::ado::sqlite::test
