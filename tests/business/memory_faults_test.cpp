// Pieces of memory that an operation of Base asks for are refused, the engine's and its own: an
// error of the operation, the rows of one of its steps and no other, and the next page works. A
// program of its own, for it stands in for the allocators.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <atomic>
#include <cstdlib>
#include <new>
#include <optional>
#include <string>

#include "business/sweep_test.h"

namespace {

/// Pieces until the one that is refused; 0: none is.
std::atomic<std::size_t> left_for_engine = 0;
thread_local std::size_t left_for_program = 0;
std::atomic<bool> refused = false;

bool is_refused(auto& left) {
  if (left == 0 || --left > 0) return false;
  return refused = true;
}

bool engine_is_refused() { return is_refused(left_for_engine); }

void* piece(std::size_t size) {
  return is_refused(left_for_program) ? nullptr : std::malloc(size == 0 ? 1 : size);
}

sqlite3_mem_methods& system_memory() {
  static sqlite3_mem_methods methods;
  return methods;
}

/// Before any test opens a database.
const bool kInstalled = [] {
  sqlite3_config(SQLITE_CONFIG_GETMALLOC, &system_memory());
  sqlite3_mem_methods ours = system_memory();
  ours.xMalloc = [](int size) -> void* {
    return engine_is_refused() ? nullptr : system_memory().xMalloc(size);
  };
  ours.xRealloc = [](void* old, int size) -> void* {
    return engine_is_refused() ? nullptr : system_memory().xRealloc(old, size);
  };
  if (sqlite3_config(SQLITE_CONFIG_MALLOC, &ours) != SQLITE_OK) std::abort();
  return true;
}();

}  // namespace

// Not inlined: the compiler would take them apart and miss the pairs.
[[gnu::noinline]] void* operator new(std::size_t size) {
  if (void* const made = piece(size)) return made;
  throw std::bad_alloc();
}
[[gnu::noinline]] void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return piece(size);
}
[[gnu::noinline]] void operator delete(void* p) noexcept { std::free(p); }
[[gnu::noinline]] void operator delete(void* p, std::size_t) noexcept { std::free(p); }
[[gnu::noinline]] void operator delete(void* p, const std::nothrow_t&) noexcept { std::free(p); }

namespace pelm {
namespace {

using test::raised;
using test::SweptOperation;

class MemoryFaults : public test::SweepTest {
 protected:
  /// False when the operation met no refusal: it asks for fewer pieces.
  bool refuse(const SweptOperation& operation, auto& left_for, std::size_t n);
  /// The first pieces, then one about every `stride`.
  void sweep(auto& left_for, std::size_t stride);
};
INSTANTIATE_TEST_SUITE_P(, MemoryFaults, ::testing::Values(test::engines().front()),
                         [](const auto& engine) { return std::string(engine.param.name); });

bool MemoryFaults::refuse(const SweptOperation& operation, auto& left_for, std::size_t n) {
  SCOPED_TRACE(std::string(operation.label) + ", piece " + std::to_string(n));
  make(operation);
  refused = false;
  left_for = n;
  const std::optional<Error> error = raised([&] { operation.act(base()); });
  left_for = 0;
  const bool met = refused;

  expect_nothing_half_done(operation, error);
  expect_the_next_page_works();
  return met;
}

void MemoryFaults::sweep(auto& left_for, std::size_t stride) {
  constexpr std::size_t kManyPieces = 20'000;
  std::size_t offset = 0;  // so that the strides of two operations do not fall together
  for (const SweptOperation& operation : test::swept_operations()) {
    std::size_t n = 1;
    while (n < kManyPieces && refuse(operation, left_for, n) && !HasFailure()) {
      n += n < 5 ? 1 : stride + offset % 7;
    }
    if (HasFailure()) return;
    EXPECT_GT(n, 1U);
    ++offset;
  }
  EXPECT_EQ(row("pragma integrity_check"), "ok");
}

TEST_P(MemoryFaults, TheEngineIsRefusedAPiece) {
  ASSERT_TRUE(kInstalled);
  sweep(left_for_engine, 151);
}

TEST_P(MemoryFaults, TheProgramIsRefusedAPiece) { sweep(left_for_program, 23); }

}  // namespace
}  // namespace pelm
