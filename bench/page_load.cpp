// Asks a server for one page again and again over kept connections; prints requests a second and
// the time within which 99 of 100 were answered.
//
//   page_load PORT PATH CLIENTS SECONDS      prints {"per_second": …, "p50_ms": …, "p99_ms": …}
#include <httplib.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

struct Load {
  std::mutex mutex;
  std::vector<double> milliseconds;
  int failures = 0;
};

void ask(int port, const char* path, Clock::time_point end, Load& load) {
  httplib::Client client("127.0.0.1", port);
  client.set_keep_alive(true);
  client.set_tcp_nodelay(true);
  std::vector<double> mine;
  int failures = 0;
  for (auto before = Clock::now(); before < end;) {
    const auto answer = client.Get(path);
    const auto after = Clock::now();
    if (!answer || answer->status != 200) ++failures;
    mine.push_back(std::chrono::duration<double, std::milli>(after - before).count());
    before = after;
  }
  const std::lock_guard lock(load.mutex);
  load.milliseconds.insert(load.milliseconds.end(), mine.begin(), mine.end());
  load.failures += failures;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 5) return 2;
  const int port = std::atoi(argv[1]);
  const int clients = std::atoi(argv[3]);
  const double seconds = std::atof(argv[4]);
  Load load;
  const auto end = Clock::now() + std::chrono::milliseconds(static_cast<int>(seconds * 1000));
  std::vector<std::thread> threads;
  for (int i = 0; i < clients; ++i) {
    threads.emplace_back([&] { ask(port, argv[2], end, load); });
  }
  for (std::thread& thread : threads) thread.join();
  std::vector<double>& all = load.milliseconds;
  if (all.empty() || load.failures > 0) {
    std::fprintf(stderr, "page_load: %d of %zu answers were no page\n", load.failures, all.size());
    return 1;
  }
  std::sort(all.begin(), all.end());
  std::printf("{\"per_second\": %.0f, \"p50_ms\": %.3f, \"p99_ms\": %.3f}\n",
              static_cast<double>(all.size()) / seconds, all[all.size() / 2],
              all[all.size() * 99 / 100]);
}
