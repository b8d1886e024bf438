/// Things that each thread keeps for their next use, instead of making them anew.
#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <new>
#include <utility>

namespace pelm {

/// Up to `kMost` of a kind, told apart by `T`, which is empty by default and never throws when it
/// moves or goes.
template <class T, std::size_t kMost>
class ThreadSpares {
 public:
  /// Empty when there is none.
  static T take() noexcept {
    if (ended_) return T();
    ThreadSpares& own = of_thread();
    return own.count_ > 0 ? std::move(own.kept_[--own.count_]) : T();
  }
  /// Drops it where there are enough.
  static void keep(T spare) noexcept {
    if (ended_) return;
    ThreadSpares& own = of_thread();
    if (own.count_ < kMost) own.kept_[own.count_++] = std::move(spare);
  }

  ThreadSpares(const ThreadSpares&) = delete;
  ThreadSpares& operator=(const ThreadSpares&) = delete;

 private:
  ThreadSpares() = default;
  ~ThreadSpares() { ended_ = true; }
  static ThreadSpares& of_thread() noexcept {
    thread_local ThreadSpares spares;
    return spares;
  }

  // Whoever uses spares may outlive them: an object in another variable of the thread, or a static
  // one.
  static inline constinit thread_local bool ended_ = false;

  std::array<T, kMost> kept_{};
  std::size_t count_ = 0;
};

/// For objects of which one is made for each statement and goes soon after: the memory of a few is
/// kept by their thread.
template <class T>
struct SpareMemory {
  using value_type = T;

  SpareMemory() = default;
  template <class U>
  SpareMemory(const SpareMemory<U>&) noexcept {}  // NOLINT: as every allocator converts

  T* allocate(std::size_t count) {
    if (count == 1) {
      Piece spare = Spares::take();
      if (spare != nullptr) return static_cast<T*>(spare.release());
    }
    return static_cast<T*>(::operator new(count * sizeof(T)));
  }
  void deallocate(T* memory, std::size_t count) noexcept {
    Piece piece(memory);
    if (count == 1) Spares::keep(std::move(piece));
  }
  template <class U>
  friend bool operator==(const SpareMemory&, const SpareMemory<U>&) noexcept {
    return true;
  }

 private:
  struct Free {
    void operator()(void* memory) const noexcept { ::operator delete(memory); }
  };
  struct Piece : std::unique_ptr<void, Free> {  // of its own kind for each T
    using std::unique_ptr<void, Free>::unique_ptr;
  };
  using Spares = ThreadSpares<Piece, 4>;
};

}  // namespace pelm
