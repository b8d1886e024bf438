// Many callers, one sequence: each number is recorded once and given once.
#include <algorithm>
#include <array>
#include <exception>
#include <list>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "business/base_test.h"
#include "support/printing_process.h"

namespace pelm {
namespace {

class NumberRace : public test::BaseTest {
 protected:
  /// Fewer behind a driver: each number reads all before it, and a server evaluates our functions.
  static int number_count() { return GetParam().provider == "SQLite" ? 2000 : 240; }

  /// `given`, in any order, must be the numbers that are recorded, each once.
  void expect_each_given_once(std::vector<std::int32_t> given) {
    EXPECT_EQ(given.size(), static_cast<std::size_t>(number_count()));
    std::vector<std::int32_t> recorded;
    for (const std::string& key : rows("select DESCRICAO from chaveunica")) {
      recorded.push_back(to_long(key.substr(std::string_view("##PED##").size())));
    }
    std::ranges::sort(given);
    std::ranges::sort(recorded);
    EXPECT_EQ(given, recorded);
    EXPECT_TRUE(std::ranges::adjacent_find(given) == given.end()) << "given twice";
  }
};
PELM_ON_EVERY_ENGINE(NumberRace);

TEST_P(NumberRace, EightThreadsTakeEachNumberOnce) {
  constexpr int kThreads = 8;
  std::array<std::vector<std::int32_t>, kThreads> taken;
  std::array<std::exception_ptr, kThreads> failures;
  const std::string database = connection_string();
  std::vector<std::thread> threads;
  for (std::size_t t = 0; t < kThreads; ++t) {
    threads.emplace_back([&, t] {
      try {
        test::ComponentThread own(database, GetParam().kind);
        for (int i = 0; i < number_count() / kThreads; ++i) {
          taken[t].push_back(own.base().fObterNovoNumOrd("PED"));
        }
      } catch (...) {
        failures[t] = std::current_exception();
      }
    });
  }
  for (std::thread& t : threads) t.join();
  for (const std::exception_ptr& failure : failures) {
    if (failure) std::rethrow_exception(failure);
  }

  std::vector<std::int32_t> given;
  for (const auto& numbers : taken) given.insert(given.end(), numbers.begin(), numbers.end());
  expect_each_given_once(std::move(given));
}

TEST_P(NumberRace, FourProcessesTakeEachNumberOnce) {
  constexpr int kProcesses = 4;
  std::list<test::PrintingProcess> takers;
  for (int p = 0; p < kProcesses; ++p) {
    takers.emplace_back(std::string(PELM_NUMBER_TAKER) + " '" + connection_string() + "' " +
                        std::to_string(number_count() / kProcesses) + " " +
                        std::to_string(GetParam().kind));
  }
  std::vector<std::int32_t> given;
  for (test::PrintingProcess& taker : takers) {
    const std::vector<std::int32_t> numbers = taker.numbers();
    EXPECT_TRUE(std::ranges::is_sorted(numbers));  // to one caller the numbers go up
    given.insert(given.end(), numbers.begin(), numbers.end());
  }
  expect_each_given_once(std::move(given));
}

}  // namespace
}  // namespace pelm
