// Access: who decides, in which order, and what is asked.
#include <algorithm>

#include "menus/menu_test.h"

namespace pelm {
namespace {

using test::of_menu;
using test::raised;
using test::Raised;
using testing::ElementsAre;

constexpr auto kNull = std::nullopt;
constexpr Oid kUser = 100;
constexpr Oid kEmployee = 300;  // linked to the user
constexpr Oid kGroup = 200;
constexpr Oid kSecondGroup = 201;
constexpr Oid kEveryone = 1;
constexpr Oid kList = 900;
constexpr Oid kOtherList = 901;
constexpr Oid kDomain = 950;
const Variant kGranted = std::int16_t{1};
const Variant kDenied = std::int16_t{0};

struct Permission {
  Oid holder;
  std::optional<int> acesso;
  Oid list = kList;
};

class AccessTest : public test::MenuTest {
 protected:
  void SetUp() override {
    MenuTest::SetUp();
    if (IsSkipped()) return;
    for (const Oid item : {kEveryone, kUser, kGroup, kSecondGroup, kEmployee}) add_item(item);
    add_user(kUser);
    join(kUser, kSecondGroup);  // the higher one first
    join(kUser, kGroup);
    link(kEmployee, kUser);
    add({{20, "Clientes", "cli.asp", 7, 1, kList}});
  }

  void add_item(Oid oid) const {
    run("insert into item (OID, CID, NOME) values (" + std::to_string(oid) + ", 1, 'x')");
  }
  void add_user(Oid oid) const {
    run("insert into usuario (OID) values (" + std::to_string(oid) + ")");
  }
  void join(Oid member, Oid group) {
    run("insert into agrupamento (OID, RPAPEL, RITEM, RGRUPO) values (" + next_oid() + ", 1, " +
        std::to_string(member) + ", " + std::to_string(group) + ")");
  }
  void link(Oid item, std::optional<Oid> user, int kind = 1121) {
    run("insert into comunicacao (OID, RTIPO, RITEM, RENDERECO) values (" + next_oid() + ", " +
        std::to_string(kind) + ", " + std::to_string(item) + ", " +
        (user ? std::to_string(*user) : "null") + ")");
  }
  void permit(const std::vector<Permission>& permissions) {
    run("delete from permissao");
    for (const Permission& p : permissions) {
      run("insert into permissao (OID, RUSUARIO, RESCOPO, ACESSO) values (" + next_oid() + ", " +
          std::to_string(p.holder) + ", " + std::to_string(p.list) + ", " +
          (p.acesso ? std::to_string(*p.acesso) : "null") + ")");
    }
  }
  void list_with_domain(Oid list, std::optional<Oid> domain) const {
    run("insert into listadeobjetos (OID, RDOMINIO) values (" + std::to_string(list) + ", " +
        (domain ? std::to_string(*domain) : "null") + ")");
  }

 private:
  std::string next_oid() { return std::to_string(++last_oid_); }
  Oid last_oid_ = 5000;
};

class AcessoOpcao : public AccessTest {};
PELM_ON_EVERY_ENGINE(AcessoOpcao);

TEST_P(AcessoOpcao, TheFirstHolderWithAPermissionDecides) {
  const struct {
    std::string_view behaviour;
    std::vector<Permission> permissions;
    bool granted;
  } kCases[] = {
      {"nobody is denied unless somebody says so", {}, true},
      {"the user denied", {{kUser, 0}}, false},
      {"the user granted", {{kUser, 1}}, true},
      {"any number but 0 grants", {{kUser, -1}}, true},
      {"a large number grants", {{kUser, 32767}}, true},
      {"a null grants", {{kUser, kNull}}, true},
      {"a null decides", {{kUser, kNull}, {kGroup, 0}}, true},
      {"the user before the group, denied", {{kGroup, 1}, {kUser, 0}}, false},
      {"the user before the group, granted", {{kGroup, 0}, {kUser, 1}}, true},
      {"the user before everyone", {{kEveryone, 0}, {kUser, 1}}, true},
      {"the group before everyone, granted", {{kEveryone, 0}, {kGroup, 1}}, true},
      {"the group before everyone, denied", {{kEveryone, 1}, {kGroup, 0}}, false},
      {"everyone denied", {{kEveryone, 0}}, false},
      {"of two groups the lower decides, granted", {{kSecondGroup, 0}, {kGroup, 1}}, true},
      {"of two groups the lower decides, denied", {{kSecondGroup, 1}, {kGroup, 0}}, false},
      {"the other group, when it alone has a permission", {{kSecondGroup, 0}}, false},
      {"another list's permissions do not count", {{kUser, 0, kOtherList}}, true},
      {"another user's permissions do not count", {{999, 0}}, true},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.behaviour);
    permit(c.permissions);
    EXPECT_EQ(menu().AcessoOpcao(kUser, 20), c.granted ? kGranted : kDenied);
    EXPECT_EQ(menu().AcessoOpcao(kEmployee, 20), c.granted ? kGranted : kDenied)
        << "by way of the user it is linked to";
  }
}

TEST_P(AcessoOpcao, WhoIsNoUserIsNotRestricted) {
  permit({{kEveryone, 0}, {999, 0}});
  EXPECT_EQ(menu().AcessoOpcao(999, 20), kGranted);
  link(301, kUser, 1120);
  EXPECT_EQ(menu().AcessoOpcao(301, 20), kGranted) << "another kind of communication links nobody";
  EXPECT_EQ(menu().AcessoOpcao(kGroup, 20), kGranted);
  EXPECT_EQ(menu().AcessoOpcao(0, 20), kGranted);
}

TEST_P(AcessoOpcao, AUserGroupOrEveryoneCountsOnlyWithItsItem) {
  add_user(101);  // no item
  join(101, kGroup);
  permit({{101, 0}});
  EXPECT_EQ(menu().AcessoOpcao(101, 20), kGranted);
  permit({{101, 0}, {kGroup, 1}});
  EXPECT_EQ(menu().AcessoOpcao(101, 20), kGranted);
  permit({{101, 1}, {kGroup, 0}});
  EXPECT_EQ(menu().AcessoOpcao(101, 20), kDenied);

  join(kUser, 202);  // no item
  permit({{202, 0}});
  EXPECT_EQ(menu().AcessoOpcao(kUser, 20), kGranted);

  run("delete from item where OID = 1");
  permit({{kEveryone, 0}});
  EXPECT_EQ(menu().AcessoOpcao(kUser, 20), kGranted);
}

TEST_P(AcessoOpcao, EveryoneAsTheUserItselfComesOnce) {
  add_user(kEveryone);
  permit({{kEveryone, 0}});
  EXPECT_EQ(menu().AcessoOpcao(kEveryone, 20), kDenied);
}

TEST_P(AcessoOpcao, AnOptionWithoutAListIsOpenAndAsksNothingMore) {
  add({{21, "Aberta", kNull, 7, 2, kNull}});
  permit({{kEveryone, 0}, {kUser, 0}});
  Variant result;
  EXPECT_THAT(calls_of([&] { return result = menu().AcessoOpcao(kUser, 21); }),
              ElementsAre("execute select rListadeObjetos from Pelm_Menu where Id = 21"));
  EXPECT_EQ(result, kGranted);
}

TEST_P(AcessoOpcao, AnUnknownOptionIsToldAndNotRaised) {
  EXPECT_EQ(
      menu().AcessoOpcao(kUser, 999),
      Variant(
          "Erro na função AcessoOpcao, o Id enviado não tem nenhum registro de opção associado."));
}

TEST_P(AcessoOpcao, AsksTheHoldersInTurnUntilOneHasAPermission) {
  permit({{kSecondGroup, 0}});
  const std::string holders =
      "execute select oid,1 from item where oid=100 Union select item.oid,2 from item inner join "
      "agrupamento on item.oid=agrupamento.rgrupo and agrupamento.ritem=100 Union select oid, 3 "
      "from item where oid=1 order by 2";
  EXPECT_THAT(
      calls_of([&] { return menu().AcessoOpcao(kUser, 20); }),
      ElementsAre("execute select rListadeObjetos from Pelm_Menu where Id = 20",
                  "execute SELECT oid FROM usuario WHERE oid=100", holders,
                  "execute select rescopo,Acesso from permissao where rusuario=100 and rescopo=900",
                  "execute select rescopo,Acesso from permissao where rusuario=200 and rescopo=900",
                  "execute select rescopo,Acesso from permissao where rusuario=201 and "
                  "rescopo=900"));
  permit({});
  EXPECT_THAT(
      calls_of([&] { return menu().AcessoOpcao(kEmployee, 20); }),
      ElementsAre("execute select rListadeObjetos from Pelm_Menu where Id = 20",
                  "execute SELECT oid FROM usuario WHERE oid=300",
                  "execute SELECT rendereco FROM comunicacao WHERE rtipo=1121 AND ritem=300",
                  holders,
                  "execute select rescopo,Acesso from permissao where rusuario=100 and rescopo=900",
                  "execute select rescopo,Acesso from permissao where rusuario=200 and rescopo=900",
                  "execute select rescopo,Acesso from permissao where rusuario=201 and rescopo=900",
                  "execute select rescopo,Acesso from permissao where rusuario=1 and rescopo=900"));
  EXPECT_THAT(
      calls_of([&] { return menu().AcessoOpcao(999, 20); }),
      ElementsAre("execute select rListadeObjetos from Pelm_Menu where Id = 20",
                  "execute SELECT oid FROM usuario WHERE oid=999",
                  "execute SELECT rendereco FROM comunicacao WHERE rtipo=1121 AND ritem=999"));
}

TEST_P(AcessoOpcao, TheFieldOfThatNameDoesNotCount) {
  permit({{kUser, 0}});
  menu().OIDFuncionario = kUser;
  EXPECT_EQ(menu().AcessoOpcao(999, 20), kGranted);
  menu().OIDFuncionario = 0;
  EXPECT_EQ(menu().AcessoOpcao(kUser, 20), kDenied);
}

TEST_P(AcessoOpcao, ALinkToNobodyFails) {
  link(301, kNull);
  EXPECT_THAT(raised([&] { menu().AcessoOpcao(301, 20); }),
              Raised(error_number::kInvalidUseOfNull, of_menu("AcessoOpcao")));
  EXPECT_THAT(raised([&] { probe().AcessoListaDeObjetos(301, kList); }),
              Raised(error_number::kInvalidUseOfNull, of_menu("AcessoListaDeObjetos")));
  EXPECT_THAT(raised([&] { probe().AcessoTotalrListadeObjetos(301, kList); }),
              Raised(error_number::kInvalidUseOfNull, of_menu("AcessoTotalrListadeObjetos")));
}

TEST_P(AcessoOpcao, NeedsNoPage) {
  leave_page();
  permit({{kUser, 0}});
  EXPECT_EQ(menu().AcessoOpcao(kUser, 20), kDenied);
  EXPECT_EQ(menu().AcessoTotalOpcao(kUser, 20), kDenied);
}

class AcessoTotalOpcao : public AccessTest {
 protected:
  void SetUp() override {
    AccessTest::SetUp();
    if (IsSkipped()) return;
    add({{30, "Ativos", kNull, 20, 1, kOtherList}, {40, "Atacado", kNull, 30, 1, kNull}});
  }
};
PELM_ON_EVERY_ENGINE(AcessoTotalOpcao);

TEST_P(AcessoTotalOpcao, EveryOptionUpToTheRootMustBeGranted) {
  permit({});
  EXPECT_EQ(menu().AcessoTotalOpcao(kUser, 40), kGranted);
  permit({{kUser, 0, kOtherList}});
  EXPECT_EQ(menu().AcessoTotalOpcao(kUser, 40), kDenied);
  EXPECT_EQ(menu().AcessoTotalOpcao(kUser, 30), kDenied);
  EXPECT_EQ(menu().AcessoTotalOpcao(kUser, 20), kGranted);
  permit({{kUser, 0, kList}});
  EXPECT_EQ(menu().AcessoTotalOpcao(kUser, 40), kDenied) << "denied two levels above";
  EXPECT_EQ(menu().AcessoOpcao(kUser, 30), kGranted) << "its own list is";
}

TEST_P(AcessoTotalOpcao, UnderTheRootNothingMoreIsAsked) {
  add({{7, "Raiz", kNull, kNull, kNull, kOtherList}});
  permit({{kUser, 0, kOtherList}});
  EXPECT_EQ(menu().AcessoTotalOpcao(kUser, 20), kGranted);
}

TEST_P(AcessoTotalOpcao, ADenialEndsTheClimb) {
  permit({{kUser, 0, kOtherList}});
  const std::vector<std::string> calls =
      calls_of([&] { return menu().AcessoTotalOpcao(kUser, 30); });
  EXPECT_EQ(calls.front(), "execute select rEscopo, rListadeObjetos from Pelm_Menu where Id = 30");
  EXPECT_EQ(std::count(calls.begin(), calls.end(),
                       "execute select rEscopo, rListadeObjetos from Pelm_Menu where Id = 20"),
            0);
}

TEST_P(AcessoTotalOpcao, AnOptionWithoutAParentEndsTheClimb) {
  add({{50, "Solta", kNull, kNull, 1, kNull}, {51, "Abaixo", kNull, 50, 1, kNull}});
  EXPECT_EQ(menu().AcessoTotalOpcao(kUser, 51), kGranted);
}

TEST_P(AcessoTotalOpcao, AMissingOptionIsToldAtWhateverLevel) {
  const Variant message =
      "Erro na função AcessoTotalOpcao, o Id enviado não tem nenhum registro de opção associado.";
  EXPECT_EQ(menu().AcessoTotalOpcao(kUser, 999), message);
  add({{60, "Órfã", kNull, 998, 1, kNull}, {61, "Neta", kNull, 60, 1, kList}});
  EXPECT_EQ(menu().AcessoTotalOpcao(kUser, 61), message);
  permit({{kUser, 0}});
  EXPECT_EQ(menu().AcessoTotalOpcao(kUser, 61), kDenied) << "the climb ends before the gap";
}

TEST_P(AcessoTotalOpcao, TheDomainOfAListIsAskedBeforeTheList) {
  list_with_domain(kList, kDomain);
  permit({{kUser, 0, kDomain}, {kUser, 1, kList}});
  EXPECT_EQ(menu().AcessoTotalOpcao(kUser, 20), kDenied);
  EXPECT_EQ(menu().AcessoOpcao(kUser, 20), kGranted);
  permit({{kUser, 1, kDomain}, {kUser, 0, kList}});
  EXPECT_EQ(menu().AcessoTotalOpcao(kUser, 20), kDenied);
  permit({{kUser, 1, kDomain}, {kUser, 1, kList}});
  EXPECT_EQ(menu().AcessoTotalOpcao(kUser, 20), kGranted);
}

TEST_P(AcessoTotalOpcao, AListWithoutADomainStandsForItself) {
  list_with_domain(kList, kNull);
  permit({{kUser, 0, kList}});
  EXPECT_EQ(menu().AcessoTotalOpcao(kUser, 20), kDenied);
}

TEST_P(AcessoTotalOpcao, RunsItsStatementsInOrder) {
  list_with_domain(kList, kDomain);
  permit({{kUser, 1, kDomain}, {kUser, 1, kList}});
  const std::string user = "execute SELECT oid FROM usuario WHERE oid=100";
  const auto holders = testing::StartsWith("execute select oid,1 from item where oid=100 Union");
  EXPECT_THAT(
      calls_of([&] { return menu().AcessoTotalOpcao(kUser, 20); }),
      ElementsAre("execute select rEscopo, rListadeObjetos from Pelm_Menu where Id = 20",
                  "execute select rdominio from listadeobjetos_r where oid = 900", user, holders,
                  "execute select rescopo,Acesso from permissao where rusuario=100 and rescopo=950",
                  user, holders,
                  "execute select rescopo,Acesso from permissao where rusuario=100 and "
                  "rescopo=900"));
}

TEST_P(AcessoTotalOpcao, AnOptionWithinItselfFails) {
  add({{70, "A", kNull, 71, 1, kNull}, {71, "B", kNull, 70, 1, kNull}});
  EXPECT_THAT(raised([&] { menu().AcessoTotalOpcao(kUser, 70); }),
              Raised(error_number::kOutOfStackSpace, of_menu("AcessoTotalOpcao")));
  EXPECT_EQ(probe().depth(), 0);
}

TEST_P(AcessoTotalOpcao, ALongClimbSucceeds) {
  std::vector<test::Option> chain;
  for (int i = 0; i < 900; ++i) {
    chain.push_back({1000 + i, "N", kNull, i == 0 ? 7 : 1000 + i - 1, 1, kNull});
  }
  add(chain);
  EXPECT_EQ(menu().AcessoTotalOpcao(kUser, 1899), kGranted);
}

}  // namespace
}  // namespace pelm
