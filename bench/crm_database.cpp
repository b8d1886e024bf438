// A database of a measurement, in a folder of its own.
#include "bench/crm_database.h"

#include <cstdlib>
#include <stdexcept>

#include "pelm/ado/connection.h"
#include "platform/ado/session_pool.h"
#include "schema/schema.h"

namespace pelm::bench {
namespace {

std::filesystem::path new_folder(Storage storage) {
  const std::filesystem::path above =
      storage == Storage::Memory ? "/dev/shm" : std::filesystem::temp_directory_path();
  std::string pattern = (above / "pelm-bench.XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) {
    throw std::runtime_error("cannot make a folder below " + above.string());
  }
  return pattern;
}

}  // namespace

std::string_view name_of(Storage storage) {
  switch (storage) {
    case Storage::Memory:
      return "memory";
    case Storage::Normal:
      return "normal";
    case Storage::Full:
      break;
  }
  return "full";
}

CrmDatabase::CrmDatabase(Storage storage, int items)
    : storage_(storage), folder_(new_folder(storage)), path_(folder_ / "crm.db") {
  ado::Connection connection;
  connection.Open(connection_string() + ";Create=True");
  create_schema(connection, "sqlite");
  connection.Execute("update controlaoid set Delta = 1000, UltimoOID = 100000");
  connection.Execute(
      "with numero (n) as (select " + std::to_string(kFirstItem) +
      " union all select n + 1 from numero where n < " + std::to_string(kFirstItem + items - 1) +
      ") insert into item (OID, CID, NOME, CODIGO, RESCOPO, CRIADOPOR, CRIADOEM, ATUALIZADOPOR, "
      "ATUALIZADOEM, OBSERVACAO, EXCLUIDO) select n, 20, 'Item número ' || n, 'C' || n, 7, 1, "
      "'2008-03-05 14:07:09', 1, '2008-03-05 14:07:09', 'Como combinado na reunião.', 0 "
      "from numero");
  connection.Close();
}

CrmDatabase::~CrmDatabase() {
  ado::empty_session_pool();
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

std::string CrmDatabase::connection_string() const {
  static constexpr std::string_view kSynchronous[] = {"Off", "Normal", "Full"};
  return "Provider=SQLite;Data Source=" + path_.string() +
         ";Synchronous=" + std::string(kSynchronous[static_cast<int>(storage_)]);
}

}  // namespace pelm::bench
