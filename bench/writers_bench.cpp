// Eight processes that write to one database, each item on its own: errors, the longest wait, and
// how evenly they come to write. Prints one line of JSON.
//
//   writers_bench [SECONDS]
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>

#include "bench/crm_database.h"
#include "bench/open_component.h"
#include "pelm/base.h"
#include "pelm/error.h"
#include "platform/ado/session_pool.h"
#include "platform/ado/sqlite/sqlite_provider.h"

namespace pelm::bench {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kProcesses = 8;
constexpr int kOidsEach = 1'000'000;

struct Outcome {
  int written = 0;
  int errors = 0;
  double worst_wait = 0;  // seconds
};

Outcome write_until(const CrmDatabase& database, int process, Clock::time_point end) {
  const auto main = open_component(database);
  const auto base = main->CBase();
  Outcome outcome;
  int oid = 10'000'000 + process * kOidsEach;
  for (auto before = Clock::now(); before < end;) {
    try {
      base->cadastrar_item(1, "Contrato", 20, oid++);
      ++outcome.written;
    } catch (const Error&) {
      ++outcome.errors;
    }
    const auto after = Clock::now();
    const std::chrono::duration<double> wait = after - before;
    outcome.worst_wait = std::max(outcome.worst_wait, wait.count());
    before = after;
  }
  main->CConn()->CloseConn();
  return outcome;
}

/// A child's outcome arrives through a pipe; one that died counts as an error.
struct Child {
  pid_t process = -1;
  int pipe = -1;

  Outcome outcome() const {
    Outcome result;
    if (read(pipe, &result, sizeof result) != sizeof result) result.errors = 1;
    close(pipe);
    waitpid(process, nullptr, 0);
    return result;
  }
};

Child start(const CrmDatabase& database, int process, Clock::time_point end) {
  std::array<int, 2> ends{};
  if (pipe(ends.data()) != 0) std::abort();
  const pid_t child = fork();
  if (child != 0) {
    close(ends[1]);
    return {child, ends[0]};
  }
  const Outcome outcome = write_until(database, process, end);
  const bool told = write(ends[1], &outcome, sizeof outcome) == sizeof outcome;
  _exit(told ? 0 : 1);
}

void run(int seconds) {
  const CrmDatabase database(Storage::Normal, 1000);
  ado::empty_session_pool();  // an open database does not survive a fork
  const auto end = Clock::now() + std::chrono::seconds(seconds);
  std::array<Child, kProcesses> children;
  for (int i = 0; i < kProcesses; ++i) {
    children[static_cast<std::size_t>(i)] = start(database, i, end);
  }
  Outcome all;
  int least = 0;
  int most = 0;
  for (const Child& child : children) {
    const Outcome one = child.outcome();
    least = &child == children.data() ? one.written : std::min(least, one.written);
    most = std::max(most, one.written);
    all.written += one.written;
    all.errors += one.errors;
    all.worst_wait = std::max(all.worst_wait, one.worst_wait);
  }
  std::printf(
      "{\"writers\": {\"processes\": %d, \"seconds\": %d, \"written\": %d, \"errors\": %d, "
      "\"worst_wait_s\": %.3f, \"least_to_most\": %.2f}}\n",
      kProcesses, seconds, all.written, all.errors, all.worst_wait,
      most == 0 ? 0.0 : static_cast<double>(least) / most);
}

}  // namespace
}  // namespace pelm::bench

int main(int argc, char** argv) {
  pelm::ado::sqlite::register_sqlite_provider();
  pelm::bench::run(argc > 1 ? std::atoi(argv[1]) : 5);
}
