// Runners are made and ended on their own threads: the script engine asks for that.
#include "host/page_pool.h"

#include <exception>
#include <utility>

namespace pelm::host {

PagePool::PagePool(std::size_t threads, const MakeRunner& make_runner) {
  try {
    for (std::size_t i = 0; i < threads; ++i) {
      threads_.emplace_back([this, make_runner] { work(make_runner); });
    }
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] { return failure_ || ready_ == threads; });
    if (failure_) std::rethrow_exception(failure_);
  } catch (...) {
    stop();
    throw;
  }
}

PagePool::~PagePool() { stop(); }

void PagePool::stop() {
  {
    const std::lock_guard guard(mutex_);
    ends_ = true;
  }
  changed_.notify_all();
  for (std::thread& thread : threads_) thread.join();
  threads_.clear();
}

void PagePool::submit(Job job) {
  {
    const std::lock_guard guard(mutex_);
    jobs_.push_back(std::move(job));
  }
  changed_.notify_one();
}

bool PagePool::take(Job& job) {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return ends_ || !jobs_.empty(); });
  if (jobs_.empty()) return false;
  job = std::move(jobs_.front());
  jobs_.pop_front();
  return true;
}

void PagePool::work(const MakeRunner& make_runner) {
  std::unique_ptr<PageRunner> runner;
  try {
    runner = make_runner();
  } catch (...) {
    const std::lock_guard guard(mutex_);
    failure_ = std::current_exception();
  }
  {
    const std::lock_guard guard(mutex_);
    ++ready_;
  }
  changed_.notify_all();
  if (!runner) return;
  for (Job job; take(job); job = nullptr) job(*runner);
}

}  // namespace pelm::host
