// The page that scripts/bench serves, written by hand on the same HTTP library: reads 50 rows and
// answers with some 10 kB. A connection and a prepared statement for each thread.
//
//   page_floor DATABASE      prints the port that it listens on; ends with its standard input
#include <httplib.h>
#include <sqlite3.h>

#include <cstdio>
#include <iostream>
#include <string>
#include <thread>

namespace {

constexpr int kThreads = 16;

struct Page {
  sqlite3* db = nullptr;
  sqlite3_stmt* rows = nullptr;

  explicit Page(const std::string& path) {
    sqlite3_open_v2(path.c_str(), &db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
    sqlite3_prepare_v2(db, "select oid, nome, observacao from item where oid > ? order by oid", -1,
                       &rows, nullptr);
  }
  Page(const Page&) = delete;
  Page& operator=(const Page&) = delete;
  ~Page() {
    sqlite3_finalize(rows);
    sqlite3_close_v2(db);
  }

  std::string text() const {
    std::string out = "<html><body><table>\n";
    const auto column = [&](int i) {
      const auto* const text = reinterpret_cast<const char*>(sqlite3_column_text(rows, i));
      return std::string(text == nullptr ? "" : text);
    };
    sqlite3_bind_int(rows, 1, 0);
    while (sqlite3_step(rows) == SQLITE_ROW) {
      out += "<tr><td>" + column(0) + "</td><td>" + column(1) + "</td><td>" + column(2) +
             "</td><td>" + std::string(100, '.') + "</td></tr>\n";
    }
    sqlite3_reset(rows);
    return out + "</table></body></html>\n";
  }
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  const std::string path = argv[1];
  httplib::Server server;
  server.new_task_queue = [] { return new httplib::ThreadPool(kThreads); };
  server.set_tcp_nodelay(true);
  server.set_keep_alive_max_count(1'000'000);
  server.Get("/pagina.page", [&](const httplib::Request&, httplib::Response& response) {
    thread_local const Page page(path);
    response.set_content(page.text(), "text/html; charset=utf-8");
  });
  std::cout << server.bind_to_any_port("127.0.0.1") << std::endl;
  std::thread serving([&] { server.listen_after_bind(); });
  while (std::getchar() != EOF) {
  }
  server.stop();
  serving.join();
}
