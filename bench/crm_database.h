/// A new database with the component's schema and some items, for one participant of a measurement.
///
///     CrmDatabase database(Storage::Normal);
///     ado connection string: database.connection_string(); the file: database.path()
///
/// It is gone when this goes. One at a time where storages differ: the newest says where whoever
/// opens a path finds it.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

struct sqlite3;  // declared, not included: a peer's header declares it in a namespace of its own

namespace pelm::bench {

/// Where a database is kept and how surely: in memory (no file, no log: the engine's own memory
/// storage, which the connections of a process share), in a file with the log synchronised at
/// checkpoints, or at every commit.
enum class Storage { Memory, Normal, Full };

inline constexpr Storage kStorages[] = {Storage::Memory, Storage::Normal, Storage::Full};

/// "memory", "normal", "full".
std::string_view name_of(Storage storage);

struct CloseSqlite {
  void operator()(sqlite3* db) const noexcept;
};
using SqliteHandle = std::unique_ptr<sqlite3, CloseSqlite>;

class CrmDatabase {
 public:
  /// With items 1000001 to 1000000 + `items`.
  explicit CrmDatabase(Storage storage, int items = 10'000);
  CrmDatabase(const CrmDatabase&) = delete;
  CrmDatabase& operator=(const CrmDatabase&) = delete;
  ~CrmDatabase();

  static constexpr int kFirstItem = 1'000'001;

  const std::filesystem::path& path() const { return path_; }
  Storage storage() const { return storage_; }
  std::string connection_string() const;

 private:
  Storage storage_;
  std::filesystem::path folder_;
  std::filesystem::path path_;
  SqliteHandle keeper_;
};

}  // namespace pelm::bench
