/// What the tests of Base share: its calls of the database, its scratch fields, a fixed time.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "frame/thread_slots.h"
#include "pelm/conversions.h"
#include "pelm/error.h"
#include "platform/value/clock.h"
#include "support/base_probe.h"
#include "support/component_fixture.h"
#include "support/raised_matchers.h"
#include "support/recording_provider.h"

namespace pelm::test {

inline const Date kNow = Date::from_civil({2008, 3, 5, 14, 7, 9});
inline constexpr std::string_view kNowShown = "05/03/2008 14:07:09";

/// The source of the errors of an operation of Base.
inline std::string of_base(std::string_view operation) {
  return "PelmComum2008.Base." + std::string(operation);
}

class BaseTest : public ComponentFixture {
 protected:
  /// The calls of the database that `action` makes, in order, without the quotes that the provider
  /// puts around names.
  template <class Action>
  std::vector<std::string> calls_of(Action action) {
    std::vector<std::string> calls;
    {
      RecordingProvider recorder(GetParam().provider);
      thread().reopen();
      recorder.clear();
      static_cast<void>(action());
      calls = recorder.texts();
    }
    thread().reopen();
    for (std::string& call : calls) {
      std::erase_if(call, [](char c) { return c == '"' || c == '`'; });
    }
    return calls;
  }

  /// As `oids_from`, with the range reserved already: no call of the database is the allocator's.
  void reserve_oids(Oid first) {
    oids_from(first - 1);
    base().Gerar_Oid();
  }

  const std::string& sSQL() { return BaseProbe(base()).sSQL(); }
  bool is_idle() { return BaseProbe(base()).is_idle(); }
  static std::string& MensagemErro() { return frame::thread_slots().MensagemErro; }

  /// Anything but an empty text, to see that an operation leaves it alone.
  void mark_sSQL() { base().fObterNomeItem(-1); }
  static constexpr std::string_view kMarkedSql = "SELECT nome FROM item WHERE oid = -1";
};

}  // namespace pelm::test
