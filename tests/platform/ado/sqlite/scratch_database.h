/// A database to test on: in memory or in a temporary folder that goes with it.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ado/provider.h"

namespace pelm::ado::sqlite::test {

/// Opens a session of the registered provider. Raises what connecting raises.
std::unique_ptr<Session> open_session(std::string_view connection_string,
                                      ConnectModeEnum mode = adModeUnknown,
                                      std::int32_t connection_timeout = 15);

/// The embedded engine's schema and the tables of the other subjects, with a few rows.
void fill(Session& session);

/// Rows as text: `8 | 'João' | null`. Integers carry an "i", Doubles a point, dates stand between
/// #.
std::string shown(const Variant& value);
std::vector<std::string> rows_of(Cursor& cursor);
std::vector<std::string> rows_of(Session& session, std::string_view sql,
                                 std::span<const Variant> values = {});
/// Runs statements that give no rows.
std::int64_t run(Session& session, std::string_view sql, std::span<const Variant> values = {});

class TemporaryFolder {
 public:
  TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder();
  const std::filesystem::path& path() const { return path_; }
  std::string file(std::string_view name) const { return (path_ / name).string(); }

 private:
  std::filesystem::path path_;
};

}  // namespace pelm::ado::sqlite::test
