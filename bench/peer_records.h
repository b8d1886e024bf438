/// The records of `c_floor.h` by way of another library, text by text as its users write them.
///
/// A `Peer` opens the database and offers two functions: `run(text, values…)` for a statement
/// without rows and `row<N>(text, values…)`, which returns the first row's N columns as texts.
/// Values are `int` and `std::string`. Peers that reuse their statements keep them by the text's
/// address.
#pragma once

#include <array>
#include <cstddef>
#include <ctime>
#include <memory>
#include <string>

#include "bench/operations.h"

namespace pelm::bench {

namespace texts {
inline constexpr const char* kInsertItem =
    "INSERT INTO item (RESCOPO, CRIADOPOR, ATUALIZADOPOR, CODIGO, CRIADOEM, ATUALIZADOEM, "
    "OBSERVACAO, NOME, EXCLUIDO, CID, OID) VALUES (:a,:b,:c,:d,:e,:f,:g,:h,:i,:j,:k)";
inline constexpr const char* kReadItem = "SELECT * FROM item WHERE oid = :a";
inline constexpr const char* kChangeItem =
    "UPDATE item SET ATUALIZADOPOR = :a, ATUALIZADOEM = :b, NOME = :c WHERE OID = :d";
inline constexpr const char* kItemName = "SELECT nome FROM item WHERE oid = :a";
inline constexpr const char* kInsertPerson =
    "INSERT INTO pessoa (RAZAOSOCIAL, OID, IDENTIFICADOR) VALUES (:a, :b, NULL)";
inline constexpr const char* kInsertNatural = "INSERT INTO pessoafisica (OID) VALUES (:a)";
inline constexpr const char* kInsertClassification =
    "INSERT INTO classificacao (RITEM, RCATEGORIA, OID) VALUES (:a,:b,:c)";
inline constexpr const char* kInsertPosition =
    "INSERT INTO agrupamento (RPAPEL, RGRUPO, RITEM, OID) VALUES (:a,:b,:c,:d)";
inline constexpr const char* kBegin = "BEGIN IMMEDIATE";
inline constexpr const char* kReserve = "UPDATE controlaoid SET UltimoOID = UltimoOID + Delta";
inline constexpr const char* kReserved = "SELECT UltimoOID FROM controlaoid";
inline constexpr const char* kRangeSize = "SELECT Delta FROM controlaoid";
inline constexpr const char* kCommit = "COMMIT";

/// What a connection is told once, as the component's own is.
inline std::array<std::string, 4> settings(Storage storage) {
  static constexpr const char* kSynchronous[] = {"OFF", "NORMAL", "FULL"};
  return {std::string("PRAGMA synchronous=") + kSynchronous[static_cast<int>(storage)],
          "PRAGMA foreign_keys=ON", "PRAGMA temp_store=MEMORY", "PRAGMA cache_size=-8000"};
}
}  // namespace texts

inline std::string moment() {
  const std::time_t seconds = std::time(nullptr);
  std::tm local = {};
  localtime_r(&seconds, &local);
  std::array<char, 20> text = {};
  std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &local);
  return text.data();
}

template <class Peer>
class PeerRecords {
 public:
  explicit PeerRecords(const CrmDatabase& database) : peer_(database), sizes_(database) {}

  void insert_item(int oid, int cid, const std::string& name) {
    const std::string created = moment();
    const std::string updated = moment();
    peer_.run(texts::kInsertItem, 7, 1, 1, std::string(), created, updated, std::string(), name, 0,
              cid, oid);
  }
  void change_item(int oid, const std::string& name) {
    peer_.template row<11>(texts::kReadItem, oid);
    peer_.run(texts::kChangeItem, 1, moment(), name, oid);
  }
  std::string item_name(int oid) { return peer_.template row<1>(texts::kItemName, oid)[0]; }
  void insert_contact(const std::string& name) {
    const int oid = next_oid();
    insert_item(oid, 45, name);
    peer_.run(texts::kInsertPerson, std::string(), oid);
    peer_.run(texts::kInsertNatural, oid);
    peer_.run(texts::kInsertClassification, oid, 1000, next_oid());
    peer_.run(texts::kInsertPosition, kPosition, kCompany, oid, next_oid());
  }

  int next_oid() {
    if (next_ > last_) {
      peer_.run(texts::kBegin);
      peer_.run(texts::kReserve);
      last_ = std::stoi(peer_.template row<1>(texts::kReserved)[0]);
      peer_.run(texts::kCommit);
      next_ = last_ - std::stoi(sizes_.template row<1>(texts::kRangeSize)[0]) + 1;
    }
    return next_++;
  }

 private:
  Peer peer_;
  Peer sizes_;  // a connection of its own, as the component asks for the size of a range
  int next_ = 0;
  int last_ = -1;
};

template <class Peer>
Operations peer_operations(const CrmDatabase& database) {
  auto records = std::make_shared<PeerRecords<Peer>>(database);
  return {[records](int n) { records->insert_item(fresh(n), 20, name(n)); },
          [records](int n) { records->change_item(existing(n), name(n)); },
          [records](int n) { return records->item_name(existing(n)); },
          [records](int n) { records->insert_contact(name(n)); },
          [records](int) { return records->next_oid(); }};
}

}  // namespace pelm::bench
