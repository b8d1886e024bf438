// The participants: the floor, the component from C++ and by names, and its peers.
#include <array>
#include <memory>
#include <vector>

#include "automation/dispatch.h"
#include "bench/c_floor.h"
#include "bench/open_component.h"
#include "bench/operations.h"
#include "bench/page_participant.h"
#include "bench/peers.h"
#include "pelm/base.h"
#include "pelm/conversions.h"

namespace pelm::bench {
namespace {

Operations floor_operations(const CrmDatabase& database) {
  auto floor = std::make_shared<CFloor>(database);
  return {[floor](int n) { floor->insert_item(fresh(n), name(n)); },
          [floor](int n) { floor->change_item(existing(n), name(n)); },
          [floor](int n) { return floor->item_name(existing(n)); },
          [floor](int n) { floor->insert_contact(name(n), kPosition, kCompany); },
          [floor](int) { return floor->next_oid(); }};
}

Operations direct_operations(const CrmDatabase& database) {
  const auto main = open_component(database);
  const std::shared_ptr<Base> base = main->CBase();
  return {[main, base](int n) { base->cadastrar_item(1, name(n), 20, fresh(n)); },
          [base](int n) { base->alterar_item(existing(n), 1, Variant(name(n))); },
          [base](int n) { return base->fObterNomeItem(existing(n)); },
          [base](int n) { base->cadastrar_contato(name(n), kPosition, kCompany); },
          [base](int) { return base->Gerar_Oid(); }};
}

Operations named_operations(const CrmDatabase& database) {
  const auto main = open_component(database);
  const ObjectRef base = main->CBase();
  const auto call = [base](std::string_view member, auto... values) {
    std::array<OptionalArg, sizeof...(values)> arguments{Variant(std::move(values))...};
    return automation::call(*base, member, arguments);
  };
  return {[main, call](int n) { call("cadastrar_item", 1, name(n), 20, fresh(n)); },
          [call](int n) { call("alterar_item", existing(n), 1, name(n)); },
          [call](int n) { return to_text(call("fObterNomeItem", existing(n))); },
          [call](int n) { call("cadastrar_contato", name(n), kPosition, kCompany); },
          [call](int) { return to_long(call("Gerar_Oid")); }};
}

constexpr Participant kParticipants[] = {
    {"c", floor_operations},
    {"component", direct_operations},
    {"by_name", named_operations},
    {"page", page_operations},
#ifdef PELM_BENCH_SQLITECPP
    {"sqlitecpp", sqlitecpp_per_call},
    {"sqlitecpp_reused", sqlitecpp_reused},
#endif
#ifdef PELM_BENCH_SOCI
    {"soci", soci_per_call},
    {"soci_reused", soci_reused},
#endif
#ifdef PELM_BENCH_POCO
    {"poco", poco_per_call},
    {"poco_reused", poco_reused},
#endif
#ifdef PELM_BENCH_QT
    {"qt", qt_per_call},
    {"qt_reused", qt_reused},
#endif
};

constexpr Operation kOperations[] = {
    {"cadastrar_item", [](const Operations& o, int n) { o.insert_item(n); }},
    {"alterar_item", [](const Operations& o, int n) { o.change_item(n); }},
    {"fObterNomeItem", [](const Operations& o, int n) { o.item_name(n); }},
    {"cadastrar_contato", [](const Operations& o, int n) { o.insert_contact(n); }},
    {"Gerar_Oid", [](const Operations& o, int n) { o.next_oid(n); }},
};

}  // namespace

void perform(const Operation& operation, const Operations& work, int first, int count) {
  if (work.many) return work.many(operation.name, first, count);
  for (int n = first; n < first + count; ++n) operation.run(work, n);
}

std::span<const Operation> operations() { return kOperations; }
std::span<const Participant> participants() { return kParticipants; }

}  // namespace pelm::bench
