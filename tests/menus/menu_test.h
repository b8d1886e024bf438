/// What the tests of Menus share: a page being served, options to begin with, the calls of the
/// database that an operation makes.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "frame/thread_slots.h"
#include "pelm/error.h"
#include "pelm/menus.h"
#include "support/component_fixture.h"
#include "support/faulty_provider.h"
#include "support/page_in_memory.h"
#include "support/raised_matchers.h"
#include "support/recording_provider.h"

namespace pelm {

/// A look at what is private.
class MenusProbe {
 public:
  explicit MenusProbe(Menus& menu) : menu_(menu) {}

  const std::string& sSQL() const { return menu_.sSQL; }
  const std::vector<Variant>& restrictions() const { return menu_.restricoes_; }
  std::int16_t GetRestricaoItemMenu(std::string_view link) const {
    return menu_.GetRestricaoItemMenu(link);
  }
  std::int16_t AcessoListaDeObjetos(Oid person, Oid list) const {
    return menu_.AcessoListaDeObjetos(person, list);
  }
  std::int16_t AcessoTotalrListadeObjetos(Oid person, Oid list) const {
    return menu_.AcessoTotalrListadeObjetos(person, list);
  }
  void Montar_Menu_Opcao(std::int32_t parent, const std::string& array) const {
    menu_.Montar_Menu_Opcao(parent, array);
  }
  int depth() const { return menu_.depth_; }

 private:
  Menus& menu_;
};

namespace test {

inline std::string of_menu(std::string_view operation) {
  return "PelmComum2008.Menu." + std::string(operation);
}

/// A row of Pelm_Menu.
struct Option {
  std::int32_t id;
  std::optional<std::string> nome;
  std::optional<std::string> link;
  std::optional<std::int32_t> parent;
  std::optional<std::int32_t> place;
  std::optional<std::int32_t> list = std::nullopt;
};

class MenuTest : public ComponentFixture {
 protected:
  void SetUp() override {
    ComponentFixture::SetUp();
    if (!IsSkipped()) new_page();
  }
  void TearDown() override {
    serving_.reset();
    ComponentFixture::TearDown();
  }

  Menus& menu() { return *main().Menu(); }
  MenusProbe probe() { return MenusProbe(menu()); }

  /// A page to write to, in place of the one before.
  void new_page() {
    serving_.reset();
    leave_page();
    page_ = page_asked_for();
    serving_.emplace(page_);
  }
  /// No page is served, and no object of one is left in the slots.
  void leave_page() {
    serving_.reset();
    frame::thread_slots().response.reset();
  }
  page::Response& response() const { return *page_->Response; }
  const std::string& written() const { return page_->Response->body(); }

  void add(const std::vector<Option>& options) const {
    std::string sql = "insert into Pelm_Menu (id, Nome, Link, rEscopo, Ordem, rListadeObjetos)";
    std::string_view before = " values (";
    for (const Option& o : options) {
      sql.append(before).append(std::to_string(o.id));
      sql.append(", ").append(literal(o.nome)).append(", ").append(literal(o.link));
      sql.append(", ").append(literal(o.parent)).append(", ").append(literal(o.place));
      sql.append(", ").append(literal(o.list)).append(")");
      before = ", (";
    }
    run(sql);
  }
  /// Options of a parent named A, B, C and so on, keys from `first_key`, with these places.
  void add_siblings(std::int32_t first_key, std::int32_t parent,
                    const std::vector<std::optional<std::int32_t>>& places) const {
    std::vector<Option> options;
    char name = 'A';
    for (const auto& place : places) {
      options.push_back({first_key++, std::string(1, name++), std::nullopt, parent, place});
    }
    add(options);
  }
  /// "A1 B2 C3": the options of a parent by place, then by key.
  std::string siblings(std::int32_t parent) const {
    std::string all;
    for (const std::string& row : rows("select Nome, Ordem from Pelm_Menu where rEscopo = " +
                                       std::to_string(parent) + " order by Ordem, id")) {
      const std::size_t bar = row.find('|');
      all += (all.empty() ? "" : " ") + row.substr(0, bar) + row.substr(bar + 1);
    }
    return all;
  }
  void clear_options() const { run("delete from Pelm_Menu"); }

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
    for (std::string& call : calls) std::erase(call, '"');
    return calls;
  }

  /// Runs `operation` with its first call of the database failing, then its second, until a run
  /// meets no fault. Each failed run must leave with `source` and the failure untouched; `check` is
  /// told the number of the failed call, 0 for the run without one.
  template <class Prepare, class Operation, class Check>
  void for_each_fault(std::string_view source, Prepare prepare, Operation operation, Check check) {
    std::size_t n = 1;
    for (;; ++n) {
      prepare();
      bool failed = false;
      std::optional<Error> error;
      {
        FaultyProvider faulty(GetParam().provider);
        thread().reopen();
        faulty.fail_at(n, provider_failure());
        error = raised(operation);
        failed = faulty.failed();
        faulty.stop();
      }
      thread().reopen();
      EXPECT_EQ(probe().depth(), 0);
      if (!failed) {
        EXPECT_THAT(error, RaisedNothing());
        check(std::size_t{0});
        break;
      }
      EXPECT_THAT(error, Raised(provider_failure().number(), source,
                                testing::Eq(provider_failure().description())))
          << "call " << n;
      check(n);
    }
    EXPECT_GT(n, 1U) << "no call was made";
  }

 private:
  static std::string literal(const std::optional<std::string>& text) {
    return text ? "'" + *text + "'" : "null";
  }
  static std::string literal(const std::optional<std::int32_t>& number) {
    return number ? std::to_string(*number) : "null";
  }

  std::shared_ptr<page::ScriptingContext> page_;
  std::optional<page::ScopedObjectContext> serving_;
};

}  // namespace test
}  // namespace pelm
