// The standard trap replaces the source of a failure and nothing else.
#include "frame/error_trap.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

#include "frame/mensagem_erro.h"
#include "frame/thread_slots.h"
#include "platform/page/response.h"

namespace pelm::frame {
namespace {

Error caught(auto&& body) {
  try {
    body();
  } catch (const Error& e) {
    return e;
  }
  throw std::logic_error("nothing was raised");
}

TEST(ErrorTrap, ReplacesTheSourceAndKeepsNumberAndDescription) {
  const Error e = caught([] {
    error_trap("Base", "cadastrar_item",
               []() -> int { throw Error(-2147217873, "SQLite", "UNIQUE constraint failed"); });
  });
  EXPECT_EQ(e.number(), -2147217873);
  EXPECT_EQ(e.source(), "PelmComum2008.Base.cadastrar_item");
  EXPECT_EQ(e.description(), "UNIQUE constraint failed");
}

TEST(ErrorTrap, KeepsTheDiagnostics) {
  const auto diagnostics = std::make_shared<const Diagnostics>(
      Diagnostics{"SQLite", "insert into item", {{"23000", 2067, "UNIQUE constraint failed"}}});
  const Error e = caught(
      [&] { error_trap("Base", "x", [&] { throw Error(1, "SQLite", "text", diagnostics); }); });
  ASSERT_NE(e.diagnostics(), nullptr);
  EXPECT_EQ(e.diagnostics()->sql, "insert into item");
}

TEST(ErrorTrap, TheOutermostOperationIsWhatThePageSees) {
  const Error e = caught([] {
    error_trap("Base", "fObterNomeItem", [] {
      error_trap("Conn", "RunSQL", [] { throw Error(13, "PelmComum2008", "Tipos incompatíveis"); });
    });
  });
  EXPECT_EQ(e.source(), "PelmComum2008.Base.fObterNomeItem");
}

TEST(ErrorTrap, MenusUsesTheSingular) {
  const Error e = caught([] { error_trap("Menu", "Montar_Menu", [] { raise_error(91); }); });
  EXPECT_EQ(e.source(), "PelmComum2008.Menu.Montar_Menu");
}

TEST(ErrorTrap, ReturnsTheResultOfASuccess) {
  EXPECT_EQ(error_trap("Base", "x", [] { return 42; }), 42);
}

TEST(ErrorTrap, MemoryExhaustedIsAnErrorOfTheOperation) {
  const Error e =
      caught([] { error_trap("Base", "cadastrar_item", []() -> int { throw std::bad_alloc(); }); });
  EXPECT_EQ(e.number(), error_number::kOutOfMemory);
  EXPECT_EQ(e.source(), "PelmComum2008.Base.cadastrar_item");
}

TEST(ErrorTrap, ThePagesOwnEndPassesThrough) {
  EXPECT_THROW(error_trap("Menu", "Montar_Menu", [] { throw page::PageEnded{}; }), page::PageEnded);
}

TEST(MensagemErro, IsStoredBeforeTheErrorIsRaisedWithIt) {
  const Error e = caught([] { raise_own_error("Aditivo inexistente."); });
  EXPECT_EQ(e.number(), 1001);
  EXPECT_EQ(e.source(), "");
  EXPECT_EQ(e.description(), "Aditivo inexistente.");
  EXPECT_EQ(thread_slots().MensagemErro, "Aditivo inexistente.");
}

TEST(MensagemErro, KeepsItsLastValueUntilTheNextWrite) {
  thread_slots().MensagemErro = "antiga";
  EXPECT_EQ(caught([] { raise_mensagem_erro(); }).description(), "antiga");
  thread_slots().MensagemErro.clear();
  EXPECT_EQ(caught([] { raise_mensagem_erro(); }).description(), "");
}

}  // namespace
}  // namespace pelm::frame
