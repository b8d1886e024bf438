// Runners are made and ended on their own threads: the script engine asks for that.
#include "host/page_pool.h"

#include <exception>
#include <utility>

namespace pelm::host {

PagePool::PagePool(std::size_t threads, const MakeRunner& make_runner) {
  try {
    for (std::size_t i = 0; i < threads; ++i) {
      Worker& worker = workers_.emplace_back();
      worker.thread = std::thread([this, &worker, make_runner] { work(worker, make_runner); });
    }
    std::unique_lock lock(mutex_);
    started_.wait(lock, [&] { return failure_ || ready_ == threads; });
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
    idle_.clear();
  }
  for (Worker& worker : workers_) worker.woken.notify_one();
  for (Worker& worker : workers_) {
    if (worker.thread.joinable()) worker.thread.join();
  }
}

void PagePool::submit(Job job) {
  Worker* worker = nullptr;
  {
    const std::lock_guard guard(mutex_);
    if (idle_.empty()) {
      jobs_.push_back(std::move(job));
      return;
    }
    worker = idle_.back();
    idle_.pop_back();
    worker->job = std::move(job);
  }
  worker->woken.notify_one();
}

/// Empty when the pool ends and nothing is left to run.
PagePool::Job PagePool::next(Worker& worker) {
  std::unique_lock lock(mutex_);
  if (jobs_.empty() && !ends_) {
    idle_.push_back(&worker);
    worker.woken.wait(lock, [&] { return ends_ || worker.job; });
    return std::exchange(worker.job, nullptr);
  }
  if (jobs_.empty()) return nullptr;
  Job job = std::move(jobs_.front());
  jobs_.pop_front();
  return job;
}

void PagePool::work(Worker& worker, const MakeRunner& make_runner) {
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
  started_.notify_one();
  if (!runner) return;
  while (const Job job = next(worker)) job(*runner);
}

}  // namespace pelm::host
