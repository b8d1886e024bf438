// Pages share a world only as long as none can tell: whatever one alters, the next finds the
// language as it was.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "host/script_engine.h"
#include "host/watchdog.h"
#include "tests/host/script_fixture.h"

namespace pelm::host {
namespace {

using ::testing::HasSubstr;

class ScriptWorldTest : public testing::ScriptFixture {};

struct Alteration {
  const char* page;   ///< what one page does
  const char* asked;  ///< what the next one asks
  const char* answer;
};

TEST_F(ScriptWorldTest, NothingThatAPageAltersReachesTheNext) {
  const Alteration alterations[] = {
      {"Array.prototype.nova = 1", "typeof [].nova", "undefined"},
      {"Array.prototype.push = 1", "typeof [].push", "function"},
      {"Array.prototype[0] = 1", "typeof [,][0]", "undefined"},
      {"Array.prototype.length = 3", "Array.prototype.length", "0"},
      {"Object.prototype[7] = 1", "typeof ({})[7]", "undefined"},
      {"delete String.prototype.trim", "typeof ''.trim", "function"},
      {"delete globalThis.Map", "typeof Map", "function"},
      {"nova = 1", "typeof nova", "undefined"},
      {"(0, eval)('var nova = 1')", "typeof nova", "undefined"},
      {"new Function('nova = 1')()", "typeof nova", "undefined"},
      {"(function () { this.nova = 1 })()", "typeof nova", "undefined"},
      {"globalThis[Symbol.for('nova')] = 1", "typeof globalThis[Symbol.for('nova')]", "undefined"},
      {"Math.PI2 = 1", "typeof Math.PI2", "undefined"},
      {"Math.abs.nova = 1", "typeof Math.abs.nova", "undefined"},
      {"JSON.stringify = () => 'x'", "JSON.stringify(1)", "1"},
      {"Object.freeze(Object.prototype)", "Object.isFrozen(Object.prototype)", "False"},
      {"Object.preventExtensions(Math)", "Object.isExtensible(Math)", "True"},
      {"Object.setPrototypeOf(Math, null)", "typeof Math.toString", "function"},
      {"Object.setPrototypeOf(Array.prototype, {nova: 1})", "typeof [].nova", "undefined"},
      {"Object.setPrototypeOf(globalThis, {nova: 1})", "typeof nova", "undefined"},
      {"Object.defineProperty(Object.prototype, 'nova', {get() { return 1 }})", "typeof ({}).nova",
       "undefined"},
      {"Object.defineProperty(Array.prototype, 'map', {writable: false})",
       "Object.getOwnPropertyDescriptor(Array.prototype, 'map').writable", "True"},
      {"Object.defineProperty(Map, Symbol.species, {get() { return 1 }})",
       "Map[Symbol.species] === Map", "True"},
      {"Array.prototype[Symbol.unscopables].nova = true",
       "typeof Array.prototype[Symbol.unscopables].nova", "undefined"},
      {"Array.prototype[Symbol.unscopables].keys = false",
       "Array.prototype[Symbol.unscopables].keys", "True"},
      {"class A { constructor(o) { return o } } class B extends A { #nova = 1; static tem(o) { "
       "return "
       "#nova in o } } new B(Math); Response.Write(B.tem(Math))",
       "typeof Math.abs", "function"},
      {"Object.getPrototypeOf([].values()).next = () => ({done: true})", "[...[1]].length", "1"},
      {"Object.getPrototypeOf(Object.getPrototypeOf([].values())).nova = 1",
       "typeof [].values().nova", "undefined"},
      {"Object.getPrototypeOf(''[Symbol.iterator]()).nova = 1", "typeof ''[Symbol.iterator]().nova",
       "undefined"},
      {"Object.getPrototypeOf(new Map().values()).nova = 1", "typeof new Map().keys().nova",
       "undefined"},
      {"Object.getPrototypeOf(new Set().values()).nova = 1", "typeof new Set().values().nova",
       "undefined"},
      {"Object.getPrototypeOf(''.matchAll(/a/g)).nova = 1", "typeof ''.matchAll(/a/g).nova",
       "undefined"},
      {"Object.getPrototypeOf(function* () {}).prototype.nova = 1",
       "typeof (function* () {})().nova", "undefined"},
      {"Object.getPrototypeOf(function* () {}).constructor.nova = 1",
       "typeof Object.getPrototypeOf(function* () {}).constructor.nova", "undefined"},
      {"Object.getPrototypeOf(async function () {}).nova = 1", "typeof (async () => {}).nova",
       "undefined"},
      {"Object.getPrototypeOf(async function* () {}).prototype.nova = 1",
       "typeof (async function* () {})().nova", "undefined"},
      {"Object.getPrototypeOf(Object.getPrototypeOf(async function* () {}).prototype).nova = 1",
       "typeof (async function* () {})().nova", "undefined"},
      {"Object.getPrototypeOf(Int8Array).nova = 1", "typeof Uint8Array.nova", "undefined"},
      {"Intl.NumberFormat.prototype.nova = 1", "typeof new Intl.NumberFormat().nova", "undefined"},
      {"Promise.prototype.then = 1", "typeof Promise.resolve().then", "function"},
      {"/(um)/.exec('um')", "RegExp.$1", ""},
      {"/u(m)/.exec('um')", "RegExp.lastMatch + RegExp.leftContext + RegExp.input", ""},
      {"RegExp.input = 'um'", "RegExp.input", ""},
      {"Request = 5", "typeof Request", "function"},
      {"delete globalThis.Response", "typeof Response", "object"},
      {"Object.defineProperty(globalThis, 'Server', {value: 1, writable: false, configurable: "
       "false})",
       "typeof Server.MapPath", "function"},
      {"Object.defineProperty(globalThis, 'Session', {get() { return 1 }})", "typeof Session",
       "function"},
      {"crypto.randomUUID = () => 1", "crypto.randomUUID().length", "36"},
      {"crypto = 1", "typeof crypto", "object"},
  };
  for (const Alteration& alteration : alterations) {
    SCOPED_TRACE(alteration.page);
    run(std::string("<% ") + alteration.page + " %>");
    EXPECT_EQ(failures(), "");
    EXPECT_EQ(run(std::string("<%= ") + alteration.asked + " %>"), alteration.answer);
    EXPECT_EQ(failures(), "");
  }
}

TEST_F(ScriptWorldTest, APageThatAltersItRunsAlikeEachTime) {
  site_.write("a.page",
              "<%= typeof [].nova %><% Array.prototype.nova = 1; outra = 2 %><%= typeof [].nova %>"
              "<%= typeof outra %>");
  site_.write("b.page", "<%= typeof [].nova %><%= typeof outra %>");
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(run_page("/a.page"), "undefinednumbernumber");
    EXPECT_EQ(run_page("/b.page"), "undefinedundefined");
  }
}

TEST_F(ScriptWorldTest, WhatAPageDeclaresIsItsOwn) {
  site_.write("a.page",
              "<% var v = 1; let l = 2; const c = 3; function f() {} class K {} %>"
              "<%= typeof v + typeof l + typeof c + typeof f + typeof K %>");
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(run_page("/a.page"), "numbernumbernumberfunctionfunction");
    EXPECT_EQ(run("<%= typeof v + typeof l + typeof c + typeof f + typeof K %>"),
              "undefinedundefinedundefinedundefinedundefined");
  }
}

TEST_F(ScriptWorldTest, AReturnEndsThePage) {
  EXPECT_EQ(run("um<% if (true) return; %>dois"), "um");
  EXPECT_EQ(failures(), "");
}

TEST_F(ScriptWorldTest, WhatThePageLeftOpenIsToldAsThePageHasIt) {
  const PageFailure open = failure_of("um\n<% if (true) { %>\ndois\n");
  EXPECT_EQ(open.number, kScriptSyntaxError);
  EXPECT_THAT(open.description, HasSubstr("missing }"));
  const PageFailure closed = failure_of("um\n<%\nvar y; }\n%>\n");
  EXPECT_EQ(closed.number, kScriptSyntaxError);
  EXPECT_EQ(closed.place.line, 3);
}

/// What is found from the globals, in an order that does not change, and ways to alter one.
constexpr const char* kReach = R"page(<%
function alcancados() {
  const vistos = new Set([globalThis]);
  const olha = (v) => { if (v !== null && (typeof v === "object" || typeof v === "function")) vistos.add(v); };
  for (const o of vistos) {
    if (o === Application || o === Session || o === Request || o === Response || o === Server) continue;
    olha(Object.getPrototypeOf(o));
    for (const d of Reflect.ownKeys(o).map((k) => Object.getOwnPropertyDescriptor(o, k))) {
      olha(d.value); olha(d.get); olha(d.set);
    }
  }
  return [...vistos].filter((o) => !(o === Application || o === Session || o === Request ||
      o === Response || o === Server || o === alcancados));
}
function descricao(o) {
  const um = (v) => (typeof v === "object" || typeof v === "function" ? typeof v : String(v));
  return Reflect.ownKeys(o).map((k) => {
    const d = Object.getOwnPropertyDescriptor(o, k);
    return String(k) + ("value" in d ? "=" + um(d.value) + (o[k] === d.value) : "()") + d.writable + d.configurable;
  }).join() + Object.isExtensible(o) + (Object.getPrototypeOf(o) === null);
}
const maneiras = [
  (o) => { o.nova = 1; },
  (o) => { for (const k of Reflect.ownKeys(o)) if (Object.getOwnPropertyDescriptor(o, k).writable) { o[k] = 12.5; return; } o.nova = 1; },
  (o) => { const k = Reflect.ownKeys(o).reverse().find((n) => Object.getOwnPropertyDescriptor(o, n).writable); if (k) o[k] = 12.5; else o.nova = 1; },
  (o) => { const k = Reflect.ownKeys(o).find((n) => Object.getOwnPropertyDescriptor(o, n).configurable); if (k) delete o[k]; else o.nova = 1; },
  (o) => { Object.preventExtensions(o); },
  (o) => { o[3] = 1; },
];
%>)page";

TEST_F(ScriptWorldTest, EveryObjectThatAPageCanReachIsAsItWas) {
  site_.write("inc.inc", kReach);
  const std::string include = "<!--#include file=\"inc.inc\"-->";
  const int count = std::stoi(run(include + "<%= alcancados().length %>"));
  ASSERT_GT(count, 500);
  // Each page is a new one, so each meets the world that pages share.
  constexpr int kStep = 61;
  for (int i = 0; i < count; i += kStep) {
    for (int way = 0; way < 6; ++way) {
      const std::string target = "alcancados()[" + std::to_string(i) + "]";
      const std::string ask = include + "<%= descricao(" + target + ") %>";
      const std::string before = run(ask);
      ASSERT_EQ(failures(), "");
      run(include + "<% maneiras[" + std::to_string(way) + "](" + target + ") %>");
      EXPECT_EQ(run(ask), before) << target << ", " << way;
    }
  }
}

/// An engine that tells how many worlds it has made.
class ScriptWorld : public ::testing::Test {
 protected:
  ScriptWorld() {
    context_.Application = std::make_shared<page::Application>();
    context_.Session = std::make_shared<page::Session>("id");
    context_.Request = std::make_shared<page::Request>();
  }

  std::shared_ptr<const CompiledScript> compiled(const std::string& text) {
    site_.write("q.page", text);
    return engine_.compile(read_page(files_below(site_.root()), "/q.page"));
  }

  void run(const CompiledScript& script, int times) {
    for (int i = 0; i < times; ++i) {
      context_.Response = std::make_shared<page::Response>();
      EXPECT_FALSE(engine_.run(script, context_));
    }
  }

  std::size_t worlds() const { return engine_.worlds_made(); }

 private:
  testing::TemporarySite site_;
  std::string ended_;
  Watchdog watchdog_;
  const PageHooks hooks_ = testing::probe_hooks(ended_);
  ScriptEngine engine_{hooks_, {}, watchdog_};
  page::ScriptingContext context_;
};

TEST_F(ScriptWorld, IsSharedByOrdinaryPages) {
  for (const char* text : {
           "texto",
           "<% class A { toString() { return 'a' } } %><%= '' + new A() %>",
           "<% const m = new Map([[1, 2]]); for (const [k, v] of m) Response.Write(k + v); %>",
           "<% try { nao_existe() } catch (e) { Response.Write(e.message) } %>",
           "<% Response.Write('a-b'.replace(/-(.)/, (x, y) => y.toUpperCase()).split('').map((c) "
           "=> c + 1).join()) %>",
           "<% Response.Write(JSON.stringify({a: [1, new Date(0)]}) + [3, 1].sort() + Math.max(1, "
           "2)) %>",
           "<% (async () => { await null; Response.Write([].push.name) })() %>",
           "<% function F() { this.x = 1 } F.prototype.y = 2; Response.Write(new F().y) %>",
           "<% for (const m of 'aba'.matchAll(/a/g)) Response.Write(m.index) %>",
           "<%= (1234.5).toLocaleString('pt-BR') %>",
           "<% function* g() { yield 1 } %><%= [...g()].join() %>",
           "fim<% Response.End() %>",
       }) {
    run(*compiled(text), 3);
    EXPECT_EQ(worlds(), 1U) << text;
  }
  // Thrice the page that alters its world, which costs one world only, and then another's.
  run(*compiled("<% Array.prototype.nova = 1 %>"), 3);
  EXPECT_EQ(worlds(), 1U);
  run(*compiled("outra"), 3);
  EXPECT_EQ(worlds(), 2U);
}

// What the engine keeps of pages grows with them, so that all of it goes now and then.
TEST_F(ScriptWorld, EndsAfterAThousandPagesOfAnyKind) {
  const auto ordinary = compiled("<% const texto = 1 %>");
  const auto altering = compiled("<% Array.prototype.nova = 1 %>");
  run(*altering, 1);
  run(*ordinary, 599);
  EXPECT_EQ(worlds(), 2U);
  run(*altering, 399);
  run(*ordinary, 1);
  EXPECT_EQ(worlds(), 2U);
  run(*ordinary, 1);
  EXPECT_EQ(worlds(), 3U);
}

}  // namespace
}  // namespace pelm::host
