// An item kept from C++, by names and from a page: the same rows, the same errors.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "automation/dispatch.h"
#include "host/page_runner.h"
#include "pelm/conversions.h"
#include "pelm/error.h"
#include "platform/page/response.h"
#include "platform/value/clock.h"
#include "support/component_fixture.h"
#include "tests/host/probe.h"
#include "tests/host/temporary_site.h"

namespace pelm::host {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr Oid kFirstOid = 100;
constexpr std::string_view kOfItem = "PelmComum2008.Base.cadastrar_item";

/// What a caller asks for.
struct Request {
  std::string_view nome = "Pasta d'água";
  Oid oid = kPedirNovoOid;
  OptionalArg criado_em = kAbsent;
};

/// How it came out: the OID as a text, or the error.
struct Outcome {
  std::string answer;
  std::int32_t number = 0;
  std::string source;
  std::string description;
  std::vector<std::string> items;  ///< the rows of the table afterwards

  bool operator==(const Outcome&) const = default;
};

void PrintTo(const Outcome& o, std::ostream* out) {
  *out << "answer " << o.answer << ", error " << o.number << " of " << o.source << " \""
       << o.description << "\"";
  for (const std::string& item : o.items) *out << "\n  " << item;
}

/// A text as a script writes it; `undefined` leaves an argument out.
std::string literal(const OptionalArg& value) {
  if (!value) return "undefined";
  if (value->is_null()) return "null";
  return '"' + to_text(*value) + '"';
}

class ThreeWays : public test::ComponentFixture {
 protected:
  using Way = std::function<std::string(const Request&)>;

  ThreeWays()
      : now_(Date::from_civil({2008, 3, 5, 14, 7, 9})),
        runner_(site_.root(), testing::probe_hooks(ended_), {}, std::make_shared<Watchdog>()) {}

  /// From C++.
  std::string directly(const Request& r) {
    return std::to_string(
        main().CBase()->cadastrar_item(1, r.nome, 20, r.oid, kEscopoPadrao, r.criado_em));
  }

  /// By the names of the class and of the member.
  static std::string by_names(const Request& r) {
    const ObjectRef created = automation::CreateObject("PelmComum2008.CMain");
    const Variant base = automation::get(*created, "cbase");
    std::array<OptionalArg, 6> arguments = {Variant(1),     Variant(r.nome), Variant(20),
                                            Variant(r.oid), kAbsent,         r.criado_em};
    return to_text(automation::call(*base.object(), "CADASTRAR_ITEM", arguments));
  }

  /// From a page's script. Raises what the page failed with.
  std::string in_a_page(const Request& r) {
    return page("base.cadastrar_item(1, \"" + std::string(r.nome) + "\", 20, " +
                std::to_string(r.oid) + ", undefined, " + literal(r.criado_em) + ")");
  }

  std::string page(const std::string& expression) {
    site_.write("p.page",
                "<% const principal = Server.CreateObject('PelmComum2008.CMain');"
                " const conexao = principal.CConn, base = principal.CBase; %><%= " +
                    expression + " %>");
    const auto context = std::make_shared<page::ScriptingContext>();
    context->Response = std::make_shared<page::Response>();
    const std::vector<PageFailure> failures = runner_.run("/p.page", context);
    if (failures.empty()) return context->Response->body();
    throw Error(failures[0].number, failures[0].source, failures[0].description);
  }

  /// What one way does in a database that `prepare` has brought to where it matters.
  Outcome outcome_of(const Way& way, const Request& request, const std::function<void()>& prepare) {
    run("delete from item");
    main().CConn();  // a page's end let it go
    thread().reopen();
    oids_from(kFirstOid);
    prepare();
    Outcome outcome;
    try {
      outcome.answer = way(request);
    } catch (const Error& e) {
      outcome.number = e.number();
      outcome.source = e.source();
      outcome.description = e.description();
    }
    outcome.items = rows("select * from item order by oid, nome");
    return outcome;
  }

  /// The outcome of all three, which must be one.
  Outcome outcome_of(
      const Request& request, const std::function<void()>& prepare = [] {}) {
    const Outcome first =
        outcome_of([this](const Request& r) { return directly(r); }, request, prepare);
    EXPECT_EQ(outcome_of(by_names, request, prepare), first) << "by names";
    EXPECT_EQ(outcome_of([this](const Request& r) { return in_a_page(r); }, request, prepare),
              first)
        << "in a page";
    return first;
  }

  const ScopedClock now_;
  testing::TemporarySite site_;
  std::string ended_;
  PageRunner runner_;
};

PELM_ON_EVERY_ENGINE(ThreeWays);

TEST_P(ThreeWays, KeepTheSameRow) {
  const Outcome kept = outcome_of({});
  EXPECT_EQ(kept.answer, std::to_string(kFirstOid)) << kept.description;
  ASSERT_EQ(kept.items.size(), 1U);
  EXPECT_THAT(kept.items[0], HasSubstr("Pasta d'água"));
}

TEST_P(ThreeWays, TakeADateAsATextAlike) {
  const Outcome kept = outcome_of({.criado_em = Variant("31/12/2007 8:05")});
  ASSERT_EQ(kept.items.size(), 1U);
  EXPECT_THAT(kept.items[0], HasSubstr("31/12/2007 08:05:00"));
}

TEST_P(ThreeWays, RefuseATextThatIsNoDateAlike) {
  const Outcome refused = outcome_of({.criado_em = Variant("abc")});
  EXPECT_EQ(refused.number, error_number::kTypeMismatch);
  EXPECT_EQ(refused.source, kOfItem);
  EXPECT_THAT(refused.items, IsEmpty());
}

TEST_P(ThreeWays, RefuseANullDateAlike) {
  const Outcome refused = outcome_of({.criado_em = Variant(Null{})});
  EXPECT_EQ(refused.number, error_number::kInvalidUseOfNull);
  EXPECT_EQ(refused.source, kOfItem);
  EXPECT_THAT(refused.items, IsEmpty());
}

TEST_P(ThreeWays, RefuseAnOidThatExistsAlike) {
  const Outcome refused = outcome_of({.oid = 8}, [this] { directly({.nome = "Antes", .oid = 8}); });
  EXPECT_EQ(refused.number, error_number::kIntegrityViolation);
  EXPECT_EQ(refused.source, kOfItem);
  ASSERT_EQ(refused.items.size(), 1U);
  EXPECT_THAT(refused.items[0], HasSubstr("Antes"));
}

TEST_P(ThreeWays, MissAColumnAlike) {
  run("drop table item");
  run("create table item (oid integer not null, nome varchar(255))");
  const Outcome refused = outcome_of({});
  EXPECT_EQ(refused.number, error_number::kItemNotFound);
  EXPECT_EQ(refused.source, kOfItem);
  EXPECT_THAT(refused.items, IsEmpty());
}

TEST_P(ThreeWays, FailOnAClosedConnectionAlike) {
  const Outcome refused = outcome_of({}, [this] { conn().Conex()->Close(); });
  EXPECT_EQ(refused.number, error_number::kInvalidConnection);
  EXPECT_EQ(refused.source, kOfItem);
  EXPECT_THAT(refused.items, IsEmpty());
}

TEST_P(ThreeWays, FailWithoutAConnectionAlike) {
  const Outcome refused = outcome_of({}, [this] {
    conn().CloseConn();
    conn().Conex(nullptr);
  });
  EXPECT_EQ(refused.number, error_number::kInvalidConnection);
  EXPECT_EQ(refused.source, kOfItem);
  EXPECT_THAT(refused.items, IsEmpty());
}

TEST_P(ThreeWays, RefuseAThirdKindOfDatabaseAlike) {
  const auto refused = [this](const std::function<void()>& assign) {
    try {
      assign();
    } catch (const Error& e) {
      EXPECT_EQ(conn().Database(), 1);
      return std::to_string(e.number()) + " " + e.source() + " " + e.description();
    }
    return std::string();
  };
  constexpr std::string_view kRefusal =
      "1001 PelmComum2008.Conn.PropertyDatabase "
      "Valor da propriedade pode ser apenas 1 para SQLServer e 2 para Oracle";
  EXPECT_EQ(refused([this] { conn().Database(3); }), kRefusal);
  EXPECT_EQ(refused([this] { automation::put(conn(), "database", Variant(3)); }), kRefusal);
  EXPECT_EQ(refused([this] { page("conexao.database = 3"); }), kRefusal);
}

}  // namespace
}  // namespace pelm::host
