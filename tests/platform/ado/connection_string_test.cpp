// Reading connection strings, and refusing malformed ones with a useful text.
#include "platform/ado/connection_string.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "pelm/error.h"

namespace pelm::ado {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Pair;

TEST(ConnectionStringParse, KeepsPairsInOrder) {
  const auto s = ConnectionString::parse("Provider=SQLite;Data Source=/tmp/a b.db");
  EXPECT_THAT(s.pairs(),
              ElementsAre(Pair("Provider", "SQLite"), Pair("Data Source", "/tmp/a b.db")));
}

struct Accepted {
  std::string text;
  std::string value;  // of keyword K
};

class ConnectionStringValue : public ::testing::TestWithParam<Accepted> {};

TEST_P(ConnectionStringValue, IsRead) {
  const auto s = ConnectionString::parse(GetParam().text);
  const std::string* value = s.find("k");
  ASSERT_NE(value, nullptr);
  EXPECT_EQ(*value, GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(
    Forms, ConnectionStringValue,
    ::testing::Values(Accepted{"K=v", "v"}, Accepted{" K = v ", "v"}, Accepted{"K=", ""},
                      Accepted{"K=;", ""}, Accepted{";;K=v;;", "v"}, Accepted{"K=a=b", "a=b"},
                      Accepted{"K=a;K=b", "b"}, Accepted{"k=a;K=b;x=c", "b"},
                      Accepted{"K=\"a;b\"", "a;b"}, Accepted{"K='a;b'", "a;b"},
                      Accepted{"K=\"say \"\"hi\"\"\"", "say \"hi\""}, Accepted{"K='it''s'", "it's"},
                      Accepted{"K={a;b}", "a;b"}, Accepted{"K={a}}b}", "a}b"},
                      Accepted{"K= \" a \" ;x=1", " a "}, Accepted{"K=\"\"", ""},
                      Accepted{"K=C:\\dados\\crm.db", "C:\\dados\\crm.db"},
                      Accepted{"K=São Paulo", "São Paulo"}, Accepted{"\tK\r\n=\tv\r\n", "v"}));

struct Refused {
  std::string text;
  std::string position;
  std::string reason;
};

class ConnectionStringRefused : public ::testing::TestWithParam<Refused> {};

TEST_P(ConnectionStringRefused, SaysWhatAndWhere) {
  try {
    ConnectionString::parse(GetParam().text);
    FAIL() << "accepted";
  } catch (const Error& e) {
    EXPECT_EQ(e.number(), error_number::kProviderFailure);
    EXPECT_EQ(e.source(), "ADODB.Connection");
    EXPECT_THAT(e.description(), HasSubstr("caractere " + GetParam().position + ":"));
    EXPECT_THAT(e.description(), HasSubstr(GetParam().reason));
  }
}

INSTANTIATE_TEST_SUITE_P(
    Forms, ConnectionStringRefused,
    ::testing::Values(Refused{"Provider", "1", "falta \"=\" depois de \"Provider\""},
                      Refused{"K=v;sem igual;x=1", "5", "\"sem igual\""},
                      Refused{"K=v; =x", "6", "falta a palavra"},
                      Refused{"ção=1;K='aberto", "9", "aberto por ' não foi fechado"},
                      Refused{"K=\"a", "3", "não foi fechado"},
                      Refused{"K={a}}", "3", "não foi fechado"},
                      Refused{"K=\"a\"b", "6", "falta \";\""}));

TEST(ConnectionStringParse, SpeaksEnglishWhenAsked) {
  set_message_language(MessageLanguage::English);
  try {
    ConnectionString::parse("x");
    ADD_FAILURE() << "accepted";
  } catch (const Error& e) {
    EXPECT_THAT(e.description(), HasSubstr("at character 1: \"=\" is missing after \"x\""));
  }
  set_message_language(MessageLanguage::Portuguese);
}

TEST(ConnectionStringFind, IsNullWithoutThePair) {
  const auto s = ConnectionString::parse("a=1");
  EXPECT_EQ(s.find("b"), nullptr);
  EXPECT_EQ(s.get("b", "other"), "other");
  EXPECT_EQ(s.get("A"), "1");
}

TEST(ConnectionStringCanonical, IsTheSameForTheSameMeaning) {
  const auto a = ConnectionString::parse("Provider=SQLite; Data Source='x;y'");
  const auto b = ConnectionString::parse("data source={x;y};PROVIDER=SQLite;");
  EXPECT_EQ(a.canonical(), b.canonical());
  EXPECT_EQ(ConnectionString::parse(a.canonical()).canonical(), a.canonical());
}

TEST(ConnectionStringCanonical, DiffersWhereAValueDiffers) {
  EXPECT_NE(ConnectionString::parse("a=1").canonical(), ConnectionString::parse("a=2").canonical());
  EXPECT_NE(ConnectionString::parse("a=x").canonical(), ConnectionString::parse("a=X").canonical());
  EXPECT_NE(ConnectionString::parse("a='1\";b=\"2'").canonical(),
            ConnectionString::parse("a=1;b=2").canonical());
}

TEST(ConnectionStringForDisplay, HidesPasswords) {
  const auto s = ConnectionString::parse("DSN=x;UID=ana;pwd=segredo;Password='outro'");
  EXPECT_EQ(s.for_display(), "DSN=x;UID=ana;pwd=***;Password=***");
}

TEST(ConnectionStringForDisplay, ReadsBackAsItWas) {
  const auto s = ConnectionString::parse("a={1;2};b=\"it's\"");
  EXPECT_EQ(ConnectionString::parse(s.for_display()).pairs(), s.pairs());
}

}  // namespace
}  // namespace pelm::ado
