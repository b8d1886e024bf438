// Values: their types, their names and when two are the same.
#include "pelm/variant.h"

#include <gtest/gtest.h>

namespace pelm {
namespace {

class Thing : public Object {};

TEST(Variant, KnowsItsType) {
  using Type = Variant::Type;
  const auto thing = std::make_shared<Thing>();
  EXPECT_EQ(Variant().type(), Type::Empty);
  EXPECT_EQ(Variant(Null{}).type(), Type::Null);
  EXPECT_EQ(Variant(std::int16_t{1}).type(), Type::Integer);
  EXPECT_EQ(Variant(std::int32_t{1}).type(), Type::Long);
  EXPECT_EQ(Variant(1.0).type(), Type::Double);
  EXPECT_EQ(Variant(true).type(), Type::Boolean);
  EXPECT_EQ(Variant(Date()).type(), Type::Date);
  EXPECT_EQ(Variant("x").type(), Type::Text);
  EXPECT_EQ(Variant(Variant::Elements{1.0}).type(), Type::Array);
  EXPECT_EQ(Variant(thing).type(), Type::Object);
  EXPECT_EQ(Variant(thing).object(), thing);
  EXPECT_EQ(Variant(ObjectRef()).type(), Type::Object);
}

TEST(Variant, ReadingAnotherTypeIsTheCallersDefect) {
  EXPECT_THROW(static_cast<void>(Variant("x").long_value()), std::bad_variant_access);
  EXPECT_THROW(static_cast<void>(Variant().text()), std::bad_variant_access);
}

TEST(Variant, EqualsWhatHasTheSameTypeAndValue) {
  const auto thing = std::make_shared<Thing>();
  const Variant values[] = {{},
                            Null{},
                            std::int16_t{1},
                            std::int32_t{1},
                            1.0,
                            true,
                            "1",
                            "",
                            Date::from_serial(1),
                            Variant::Elements{},
                            thing,
                            ObjectRef(),
                            "João",
                            "joão",
                            Variant::Elements{1.0},
                            Variant::Elements{Null{}, "a"},
                            std::make_shared<Thing>()};
  for (const Variant& a : values) {
    for (const Variant& b : values) EXPECT_EQ(a == b, &a == &b);
  }
}

TEST(Variant, ComparesArraysByElementsAndDatesByMoment) {
  const auto nested = [] {
    return Variant(Variant::Elements{Variant::Elements{"a", 1.0}, Null{}});
  };
  EXPECT_EQ(nested(), nested());
  EXPECT_NE(nested(), Variant(Variant::Elements{Variant::Elements{"a", 2.0}, Null{}}));
  EXPECT_EQ(Variant(Date::from_serial(-0.25)), Variant(Date::from_serial(0.25)));
}

TEST(Variant, AbsentIsNeitherEmptyNorNull) {
  const OptionalArg absent = kAbsent;
  EXPECT_FALSE(absent.has_value());
  EXPECT_TRUE(OptionalArg(Variant()).has_value());
  EXPECT_TRUE(OptionalArg(Null{}).has_value());
}

TEST(Variant, TypesHaveNames) {
  using Type = Variant::Type;
  EXPECT_EQ(type_name(Type::Empty), "Empty");
  EXPECT_EQ(type_name(Type::Null), "Null");
  EXPECT_EQ(type_name(Type::Integer), "Integer");
  EXPECT_EQ(type_name(Type::Long), "Long");
  EXPECT_EQ(type_name(Type::Double), "Double");
  EXPECT_EQ(type_name(Type::Boolean), "Boolean");
  EXPECT_EQ(type_name(Type::Date), "Date");
  EXPECT_EQ(type_name(Type::Text), "Text");
  EXPECT_EQ(type_name(Type::Array), "Array");
  EXPECT_EQ(type_name(Type::Object), "Object");
}

}  // namespace
}  // namespace pelm
