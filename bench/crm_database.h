/// A new database with the component's schema and some items, for one participant of a measurement.
///
///     CrmDatabase database(Storage::Normal);
///     ado connection string: database.connection_string(); the file: database.path()
///
/// It is gone when this goes.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace pelm::bench {

/// Where a database is kept and how surely: in memory (a file system of memory, nothing
/// synchronised), in a file with the log synchronised at checkpoints, or at every commit.
enum class Storage { Memory, Normal, Full };

inline constexpr Storage kStorages[] = {Storage::Memory, Storage::Normal, Storage::Full};

/// "memory", "normal", "full".
std::string_view name_of(Storage storage);

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
};

}  // namespace pelm::bench
