// The table of objects that the C interface has handed out.
#include "c_api/handles.h"

#include <utility>

#include "frame/mod_principal.h"
#include "pelm/error.h"

namespace pelm::c_api {
namespace {

/// Tells the table when the thread ends, from the first object it was given.
struct ThreadWatch {
  ThreadWatch() = default;
  ThreadWatch(const ThreadWatch&) = delete;
  ThreadWatch& operator=(const ThreadWatch&) = delete;
  ~ThreadWatch() { Handles::instance().thread_ends(); }
};

void watch_this_thread() {
  frame::start_thread();  // first, so that the thread's shared objects outlive its handles
  thread_local const ThreadWatch watch;
}

constexpr int kUsesShift = 32;

std::uint64_t handle_of(std::size_t index, std::uint32_t uses) {
  return (std::uint64_t{uses} << kUsesShift) | (index + 1);
}

}  // namespace

Handles& Handles::instance() {
  // Never destroyed: threads may end after the process's statics have gone.
  static auto* const handles = new Handles;
  return *handles;
}

std::uint64_t Handles::add(ObjectRef object) {
  watch_this_thread();
  const std::lock_guard lock(mutex_);
  std::size_t index = slots_.size();
  if (free_.empty()) {
    slots_.emplace_back();
    free_.reserve(slots_.size());  // so that releasing never needs memory
  } else {
    index = free_.back();
    free_.pop_back();
  }
  Slot& slot = slots_[index];
  slot.object = std::move(object);
  slot.owner = std::this_thread::get_id();
  return handle_of(index, slot.uses);
}

Handles::Slot& Handles::used_slot(std::uint64_t handle) {
  const std::size_t index = (handle & 0xFFFFFFFFU) - 1;
  if (index >= slots_.size() || handle_of(index, slots_[index].uses) != handle ||
      !slots_[index].object || slots_[index].left_behind) {
    raise_error(error_number::kInvalidCall, kProjectSource,
                "(a referência não existe ou já foi liberada)");
  }
  return slots_[index];
}

ObjectRef Handles::find(std::uint64_t handle) {
  const std::lock_guard lock(mutex_);
  const Slot& slot = used_slot(handle);
  if (slot.owner != std::this_thread::get_id()) {
    raise_error(error_number::kInvalidCall, kProjectSource, "(o objeto pertence a outra thread)");
  }
  return slot.object;
}

ObjectRef Handles::take(Slot& slot, std::size_t index) {
  ++slot.uses;
  slot.left_behind = false;
  free_.push_back(index);
  return std::exchange(slot.object, nullptr);
}

void Handles::release(std::uint64_t handle) {
  ObjectRef last;  // goes after the lock: its end may call back
  const std::lock_guard lock(mutex_);
  Slot& slot = used_slot(handle);
  if (slot.owner == std::this_thread::get_id()) {
    last = take(slot, static_cast<std::size_t>(&slot - slots_.data()));
  } else {
    slot.left_behind = true;
    ++left_behind_;
  }
}

bool Handles::empty() {
  const std::lock_guard lock(mutex_);
  return free_.size() == slots_.size();
}

void Handles::release_left_behind() {
  if (left_behind_ == 0) return;  // as nearly always: every call asks
  std::vector<ObjectRef> last;
  const std::lock_guard lock(mutex_);
  for (std::size_t i = 0; i < slots_.size(); ++i) {
    if (slots_[i].left_behind && slots_[i].owner == std::this_thread::get_id()) {
      last.push_back(take(slots_[i], i));
      --left_behind_;
    }
  }
}

void Handles::thread_ends() noexcept {
  for (std::size_t i = 0;;) {
    ObjectRef last;
    const std::lock_guard lock(mutex_);
    while (i < slots_.size() &&
           !(slots_[i].object && slots_[i].owner == std::this_thread::get_id())) {
      ++i;
    }
    if (i == slots_.size()) return;
    if (slots_[i].left_behind) --left_behind_;
    last = take(slots_[i], i);
  }
}

}  // namespace pelm::c_api
