/// What is measured, and who does it: the same records by each participant.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "bench/crm_database.h"

namespace pelm::bench {

constexpr int kItems = 100'000;
constexpr int kPosition = 30;
constexpr int kCompany = 40;

inline int existing(int n) { return CrmDatabase::kFirstItem + n % kItems; }
inline int fresh(int n) { return 10'000'000 + n; }
inline std::string name(int n) { return "Contrato número " + std::to_string(n); }

/// The work as one participant does it. Every call is given another number.
struct Operations {
  std::function<void(int)> insert_item;
  std::function<void(int)> change_item;
  std::function<std::string(int)> item_name;
  std::function<void(int)> insert_contact;
  std::function<int(int)> next_oid;
  /// For whoever does not work call by call: an operation by its name, for so many numbers from the
  /// first on.
  std::function<void(std::string_view, int, int)> many = {};
};

struct Operation {
  std::string_view name;
  void (*run)(const Operations&, int);
};
std::span<const Operation> operations();

/// For `count` numbers from `first` on.
void perform(const Operation& operation, const Operations& work, int first, int count);

struct Participant {
  std::string_view name;
  Operations (*make)(const CrmDatabase&);
};
/// The floor first, then the component, then the peers that the build found.
std::span<const Participant> participants();

}  // namespace pelm::bench
