// A page that would never end, or would take all memory, is stopped; its thread serves the next.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <string_view>

#include "pelm/error.h"
#include "tests/host/script_fixture.h"

namespace pelm::host {
namespace {

using ::testing::HasSubstr;
using namespace std::chrono_literals;

class TimeLimit : public testing::ScriptFixture {
 protected:
  TimeLimit() : ScriptFixture({.time = 200ms, .heap_bytes = std::size_t{64} << 20U}) {}
};

TEST_F(TimeLimit, StopsWhatWouldNeverEnd) {
  for (const std::string_view code :
       {"while (true);", "for (;;) { try { while (true); } catch (e) {} finally { continue; } }",
        "const p = Server.CreateObject('Teste.Probe'); while (true) p.Nome;",
        "(async () => { while (true) await null; })();",
        "const f = () => Promise.resolve().then(f); f();", "[1].map(() => { while (true); });"}) {
    const PageFailure failure = failure_of("<%\n" + std::string(code) + " %>");
    EXPECT_EQ(failure.number, kScriptTimedOut) << code;
    EXPECT_THAT(failure.description, HasSubstr("0,2 s")) << code;
    EXPECT_EQ(failure.place.file, "/p.page") << code;
    // Between two jobs of a promise no line is running.
    const bool in_jobs = code.find("await") != code.npos || code.find("Promise") != code.npos;
    EXPECT_EQ(failure.place.line, in_jobs ? failure.place.line : 2) << code;
    EXPECT_EQ(run("<%= 'a próxima' %>"), "a próxima") << code;
    EXPECT_EQ(failures(), "") << code;
  }
}

TEST_F(TimeLimit, APageMayAskForAnother) {
  EXPECT_EQ(run("<% Server.ScriptTimeout = 60;"
                " for (const fim = Date.now() + 400; Date.now() < fim;); %>fim"),
            "fim");
  EXPECT_EQ(failures(), "");
}

TEST_F(TimeLimit, EndsTheObjectsOfTheStoppedPage) {
  const int before = testing::Probe::alive();
  failure_of("<% const p = Server.CreateObject('Teste.Probe'); p.Nome = 'a'; while (true); %>");
  EXPECT_EQ(ended_, "a;");
  EXPECT_EQ(testing::Probe::alive(), before);
}

class MemoryLimit : public testing::ScriptFixture {
 protected:
  MemoryLimit() : ScriptFixture({.time = 90s, .heap_bytes = std::size_t{32} << 20U}) {}
};

TEST_F(MemoryLimit, StopsWhatWouldTakeAllMemory) {
  for (const std::string_view code :
       {"const a = []; while (true) a.push({ x: a.length });",
        "const a = []; while (true) a.push('x'.repeat(100000) + a.length);",
        "const a = []; while (true) a.push(new Array(10000).fill(0));",
        "const a = []; while (true) a.push(new Uint8Array(100000).fill(1));",
        "let s = 'ab'; while (true) { s += s; s.charCodeAt(s.length - 1); }",
        "const m = new Map(); while (true) m.set(m.size, m.size);"}) {
    const PageFailure failure = failure_of("<% " + std::string(code) + " %>");
    // The engine itself refuses a text or an array that is too long, which a page may catch.
    EXPECT_TRUE(failure.number == error_number::kOutOfMemory ||
                failure.number == kScriptThrownValue)
        << code << ": " << failure.description;
    EXPECT_EQ(run("<%= 'a próxima' %>"), "a próxima") << code;
    EXPECT_EQ(failures(), "") << code;
  }
}

TEST_F(MemoryLimit, APageThatCatchesItIsStoppedAllTheSame) {
  const PageFailure failure = failure_of(
      "<% const a = []; for (;;) { try { while (true) a.push('x'.repeat(10000) + a.length); }"
      " catch (e) {} } %>");
  EXPECT_EQ(failure.number, error_number::kOutOfMemory);
}

TEST_F(MemoryLimit, WhatCanBeCollectedDoesNotCount) {
  EXPECT_EQ(run("<% for (let i = 0; i < 3000; ++i) { const s = 'x'.repeat(100000) + i;"
                " s.charCodeAt(5); } %>fim"),
            "fim");
  EXPECT_EQ(failures(), "");
}

TEST_F(MemoryLimit, ObjectsThatAPageLetsGoOfAreReleasedWhileItRuns) {
  const int before = testing::Probe::alive();
  EXPECT_EQ(run("<% const p = Server.CreateObject('Teste.Probe');"
                " for (let i = 0; i < 30000; ++i) p.Novo(); %><%= p.Vivos < 20000 %>"),
            "True");
  EXPECT_EQ(failures(), "");
  EXPECT_EQ(testing::Probe::alive(), before);
}

}  // namespace
}  // namespace pelm::host
