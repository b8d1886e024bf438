/// Records what crosses the seam to a database, in order.
///
///     pelm::test::RecordingProvider recorder("SQLite");
///     base.cadastrar_item(…);
///     EXPECT_THAT(recorder.texts(), ElementsAre("describe item", "execute insert into item …"));
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "support/observed_provider.h"

namespace pelm::test {

/// Stands in for the registered provider of a name while it lives. Each execute, describe, call,
/// begin, commit and rollback is recorded, not the fetching of rows; connecting only on demand,
/// since a pooled session hides it. Any thread may use it.
class RecordingProvider {
 public:
  explicit RecordingProvider(std::string_view name = "SQLite");
  ~RecordingProvider();

  std::vector<ProviderCall> calls() const;
  /// `to_text` of each call.
  std::vector<std::string> texts() const;
  /// How many sessions were opened, pooled ones not counted.
  std::size_t connects() const;
  void clear();

 private:
  class Record;
  std::shared_ptr<Record> record_;
  ObservedProvider in_place_;
};

}  // namespace pelm::test
