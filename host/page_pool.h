/// The threads that run pages, each with a runner, and so a script engine and a set of the
/// component's shared objects, of its own for as long as it lives.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "host/page_runner.h"

namespace pelm::host {

class PagePool {
 public:
  using Job = std::function<void(PageRunner&)>;
  using MakeRunner = std::function<std::unique_ptr<PageRunner>()>;

  /// Returns when every thread has its runner; throws what `make_runner` throws on any of them.
  PagePool(std::size_t threads, const MakeRunner& make_runner);
  PagePool(const PagePool&) = delete;
  PagePool& operator=(const PagePool&) = delete;
  /// Runs what was submitted, then ends the threads.
  ~PagePool();

  /// In order of arrival, each on the free thread that ran a page last: what its engine needs is
  /// still in the processor's caches. A job throws nothing.
  void submit(Job job);

 private:
  struct Worker {
    std::condition_variable woken;
    Job job;  ///< handed over while it was idle
    std::thread thread;
  };

  void work(Worker& worker, const MakeRunner& make_runner);
  Job next(Worker& worker);
  void stop();

  std::mutex mutex_;
  std::condition_variable started_;
  std::deque<Job> jobs_;       ///< that no worker was free for
  std::vector<Worker*> idle_;  ///< the last one to become so comes last
  std::size_t ready_ = 0;
  std::exception_ptr failure_;  ///< of a worker that could not start
  bool ends_ = false;
  std::deque<Worker> workers_;
};

}  // namespace pelm::host
