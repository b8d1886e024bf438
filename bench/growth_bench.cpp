// What size costs: an item added to a table of a thousand rows and to one of ten million, and the
// memory that a record set of a million rows takes, beside the rows' own bytes. Prints a line each.
//
//   growth_bench [ROUNDS]
#include <malloc.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "bench/crm_database.h"
#include "bench/open_component.h"
#include "bench/operations.h"
#include "pelm/ado/connection.h"
#include "pelm/ado/recordset.h"
#include "platform/ado/sqlite/sqlite_provider.h"

namespace pelm::bench {
namespace {

constexpr int kFew = 1'000;
constexpr int kMany = 10'000'000;
constexpr int kRead = 1'000'000;
constexpr int kAddedEach = 2'000;  // a round

/// More items below those that a database begins with.
void grow(const CrmDatabase& database, int items) {
  ado::Connection connection;
  connection.Open(database.connection_string());
  connection.CommandTimeout(0);
  connection.Execute("with numero (n) as (select 1 union all select n + 1 from numero where n < " +
                     std::to_string(items) +
                     ") insert into item (OID, CID, NOME, CODIGO, RESCOPO, CRIADOPOR, CRIADOEM, "
                     "ATUALIZADOPOR, ATUALIZADOEM, OBSERVACAO, EXCLUIDO) select -n, 20, "
                     "'Item número ' || n, 'C' || n, 7, 1, '2008-03-05 14:07:09', 1, "
                     "'2008-03-05 14:07:09', 'Como combinado na reunião.', 0 from numero");
}

double median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

struct Series {
  const CrmDatabase& database;
  int added = 0;
  std::vector<double> microseconds = {};

  void run(const Participant& participant) {
    const Operations work = participant.make(database);
    const auto before = std::chrono::steady_clock::now();
    for (int i = 0; i < kAddedEach; ++i) work.insert_item(added++);
    const std::chrono::duration<double, std::micro> took =
        std::chrono::steady_clock::now() - before;
    microseconds.push_back(took.count() / kAddedEach);
  }
};

void measure_insertion(int rounds) {
  const CrmDatabase few(Storage::Normal, kFew);
  const CrmDatabase many(Storage::Normal, kFew);
  grow(many, kMany);
  for (const Participant& participant : participants().first(2)) {
    static int taken = 0;  // the participants add different items
    Series in_few{few, taken};
    Series in_many{many, taken};
    for (int round = 0; round < rounds; ++round) {
      in_few.run(participant);
      in_many.run(participant);
    }
    taken = in_few.added;
    const double small = median(in_few.microseconds);
    const double large = median(in_many.microseconds);
    std::printf("insert into %d rows / %d rows, %s: %.1f / %.1f us = %.2f\n", kMany, kFew,
                participant.name.data(), large, small, large / small);
  }
}

std::size_t held() {
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

void measure_reading() {
  const CrmDatabase database(Storage::Normal, kFew);
  grow(database, kRead - kFew);
  const auto main = open_component(database);
  const auto conn = main->CConn();
  std::string query = "select oid, nome, observacao from item order by oid";
  conn->RunSQL(query);  // the engine keeps what it will of the file
  const std::size_t before = held();
  const auto rows = conn->RunSQL(query);
  const double taken = static_cast<double>(held() - before);
  double data = 0;
  for (; !rows->Eof(); rows->MoveNext()) {
    data += sizeof(std::int32_t);
    for (const char* text : {"nome", "observacao"}) {
      data += static_cast<double>(rows->Fields(text).Value().text().size());
    }
  }
  std::printf("record set of %d rows: %.1f MB for %.1f MB of data = %.2f\n", rows->RecordCount(),
              taken / 1e6, data / 1e6, taken / data);
}

}  // namespace
}  // namespace pelm::bench

int main(int argc, char** argv) {
  pelm::ado::sqlite::register_sqlite_provider();
  pelm::bench::measure_reading();
  pelm::bench::measure_insertion(argc > 1 ? std::atoi(argv[1]) : 9);
}
