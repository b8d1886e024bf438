// Holding, erasing and stepping over rows.
#include "platform/ado/row_store.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace pelm::ado {
namespace {

RowStore store_of(int rows) {
  RowStore store;
  store.reset(1);
  for (int i = 0; i < rows; ++i) store.set(store.append(), 0, i);
  return store;
}

TEST(RowStore, AppendsRowsOfNulls) {
  RowStore store;
  store.reset(2);
  EXPECT_EQ(store.append(), 0U);
  EXPECT_TRUE(store.value(0, 0).is_null());
  EXPECT_TRUE(store.value(0, 1).is_null());
}

TEST(RowStore, KeepsNumbersWhileRowsAreErased) {
  RowStore store = store_of(4);
  store.erase(1);
  store.erase(1);
  EXPECT_EQ(store.size(), 4U);
  EXPECT_EQ(store.live(), 3U);
  EXPECT_FALSE(store.is_live(1));
  EXPECT_EQ(store.value(2, 0), Variant(2));
  EXPECT_EQ(store.append(), 4U);
  EXPECT_TRUE(store.is_live(4));
}

TEST(RowStore, StepsOverErasedRows) {
  RowStore store = store_of(5);
  store.erase(0);
  store.erase(2);
  store.erase(4);
  EXPECT_EQ(store.next_live(0), 1U);
  EXPECT_EQ(store.next_live(2), 3U);
  EXPECT_EQ(store.next_live(4), store.size());
  EXPECT_EQ(store.previous_live(4), 3);
  EXPECT_EQ(store.previous_live(0), -1);
  EXPECT_EQ(store.previous_live(-1), -1);
}

TEST(RowStore, ForgetsEverythingWhenReset) {
  RowStore store = store_of(3);
  store.erase(0);
  store.reset(2);
  EXPECT_EQ(store.size(), 0U);
  EXPECT_EQ(store.append(), 0U);
  EXPECT_TRUE(store.is_live(0));
}

class CountingCursor final : public Cursor {
 public:
  CountingCursor(int rows, std::vector<Variant> values) : left_(rows), values_(std::move(values)) {}
  const ColumnList& columns() const override { return no_columns(); }
  bool next() override { return left_-- > 0; }
  Variant value(std::size_t column) const override { return values_[column]; }
  std::int64_t rows_affected() const override { return -1; }

 private:
  int left_;
  std::vector<Variant> values_;
};

TEST(RowStore, GivesEveryValueBackHoweverManyRowsThereAre) {
  const std::vector<Variant> values = {Null{},
                                       std::int16_t{-7},
                                       std::int32_t{2'000'000'001},
                                       -0.5,
                                       true,
                                       Date::from_serial(39512.588),
                                       "",
                                       "Confeitaria São João",
                                       std::string(127, 'x'),
                                       std::string(128, 'y'),
                                       std::string(5'000, 'z'),
                                       false};
  constexpr int kRows = static_cast<int>(RowStore::kAsValues) + 3;
  CountingCursor cursor(kRows, values);
  RowStore store;
  store.reset(values.size());
  store.read(cursor, 0);
  ASSERT_EQ(store.size(), kRows);
  for (const std::size_t row :
       {std::size_t{0}, RowStore::kAsValues - 1, RowStore::kAsValues, RowStore::kAsValues + 2}) {
    for (std::size_t c = 0; c < values.size(); ++c) {
      EXPECT_EQ(store.value(row, c), values[c]) << "row " << row << ", column " << c;
    }
  }
}

TEST(RowStore, StopsAtItsLimitBeforeAndAfterItPacks) {
  for (const std::size_t limit : {std::size_t{1}, RowStore::kAsValues, RowStore::kAsValues + 1}) {
    CountingCursor cursor(1000, {Variant(1)});
    RowStore store;
    store.reset(1);
    store.read(cursor, limit);
    EXPECT_EQ(store.size(), limit);
  }
}

TEST(RowStore, AChangedRowKeepsItsOtherValues) {
  const std::size_t rows = RowStore::kAsValues + 10;
  CountingCursor cursor(static_cast<int>(rows), {Variant(1), Variant("Ana"), Variant(Null{})});
  RowStore store;
  store.reset(3);
  store.read(cursor, 0);
  for (const std::size_t row : {std::size_t{5}, rows - 1}) {
    store.set(row, 1, "Beatriz");
    store.set(row, 2, 2.5);
    EXPECT_EQ(store.value(row, 0), Variant(1));
    EXPECT_EQ(store.value(row, 1), Variant("Beatriz"));
    EXPECT_EQ(store.value(row, 2), Variant(2.5));
    EXPECT_EQ(store.value(row - 1, 1), Variant("Ana"));
  }
  const std::size_t added = store.append();
  EXPECT_EQ(added, rows);
  EXPECT_TRUE(store.value(added, 1).is_null());
  store.set(added, 1, "Caio");
  EXPECT_EQ(store.value(added, 1), Variant("Caio"));
}

}  // namespace
}  // namespace pelm::ado
