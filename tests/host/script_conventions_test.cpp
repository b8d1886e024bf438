// How a script sees objects, values and errors.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "pelm/error.h"
#include "tests/host/script_fixture.h"

namespace pelm::host {
namespace {

using ::testing::HasSubstr;

class ScriptConventions : public testing::ScriptFixture {};

struct ExpressionCase {
  std::string_view expression;
  std::string_view output;
};

/// What the C++ side receives for a value of the script.
class ScriptValues : public testing::ScriptFixture {};

TEST_F(ScriptValues, ReachTheComponentByTheirType) {
  const std::vector<ExpressionCase> cases = {
      {"p.Descreve(5)", "Long 5"},
      {"p.Descreve(5.0)", "Long 5"},
      {"p.Descreve(-2147483648)", "Long -2147483648"},
      {"p.Descreve(2147483648)", "Double 2147483648"},
      {"p.Descreve(0.5)", "Double 0,5"},
      {"p.Descreve(10n)", "Long 10"},
      {"p.Descreve('João')", "Text João"},
      {"p.Descreve('')", "Text "},
      {"p.Descreve('a\\0b').length", "8"},
      {"p.Descreve('\\ud800')", "Text \xEF\xBF\xBD"},
      {"p.Descreve('😀')", "Text 😀"},
      {"p.Descreve('\\x7f\\x80\\xff')", "Text \x7F\xC2\x80\xC3\xBF"},
      {"p.Descreve('ÿ\\u0100')", "Text ÿĀ"},
      {"p.Descreve(true)", "Boolean True"},
      {"p.Descreve(null)", "Null"},
      {"p.Descreve(undefined)", "ausente"},
      {"p.Descreve()", "ausente"},
      {"p.DescreveObjeto(null)", "Object nada"},
      {"p.DescreveObjeto(p)", "Object"},
      {"p.Descreve([1, 'a', [null]])", "Array[Long 1;Text a;Array[Null;];]"},
      {"p.Descreve([undefined])", "Array[Empty ;]"},
      {"p.Descreve(new Date(2008, 2, 5, 14, 7, 9))", "Date 05/03/2008 14:07:09"},
      {"p.Descreve(new Date(1899, 11, 30))", "Date 00:00:00"},
      {"p.Descreve(new String('x'))", "Text x"},
      {"p.Descreve(new Number(2))", "Long 2"},
      {"p.Descreve(new Boolean(false))", "Boolean False"},
  };
  for (const auto& [expression, output] : cases)
    EXPECT_EQ(value_of(expression), output) << expression;
}

TEST_F(ScriptValues, WithoutAMeaningForTheComponentAreATypeMismatch) {
  for (const auto* expression :
       {"p.Descreve({})", "p.Descreve(() => 1)", "p.Descreve(Symbol())", "p.Descreve(/x/)",
        "p.Descreve(new Map())", "p.Valor = {}", "p.Descreve(new Date(NaN))",
        "p.Descreve((() => { let a = []; a[0] = a; return a; })())"}) {
    const PageFailure failure = failure_of("<% const p = Server.CreateObject('Teste.Probe'); " +
                                           std::string(expression) + " %>");
    EXPECT_EQ(failure.number, error_number::kTypeMismatch) << expression;
  }
  EXPECT_EQ(
      failure_of("<% Server.CreateObject('Teste.Probe').Descreve(new Date(99, 0, 1).setFullYear"
                 "(20000) && new Date(20000, 0, 1)) %>")
          .number,
      error_number::kOverflow);
}

TEST_F(ScriptValues, ComeBackWithTheirType) {
  const std::vector<ExpressionCase> cases = {
      {"typeof p.Valor", "undefined"},
      {"(p.Valor = null, p.Valor === null)", "True"},
      {"(p.Valor = 7, p.Valor === 7)", "True"},
      {"(p.Valor = 0.25, p.Valor === 0.25)", "True"},
      {"(p.Valor = 'ação', p.Valor === 'ação')", "True"},
      {"(p.Valor = '\\x80\\xff', p.Valor === '\\x80\\xff')", "True"},
      {"(p.Valor = 'ÿ\\u0100😀', p.Valor === 'ÿ\\u0100😀')", "True"},
      {"(p.Valor = true, p.Valor === true)", "True"},
      {"(p.Valor = new Date(2008, 2, 5, 14, 7, 9), p.Valor.getTime() === "
       "new Date(2008, 2, 5, 14, 7, 9).getTime())",
       "True"},
      {"(p.Valor = new Date(150, 0, 2, 3, 4, 5), p.Valor.getFullYear() + p.Valor.getSeconds())",
       "155"},
      {"(p.Valor = [1, ['x']], Array.isArray(p.Valor) && p.Valor[1][0])", "x"},
      {"p.Nada === null", "True"},
  };
  for (const auto& [expression, output] : cases)
    EXPECT_EQ(value_of(expression), output) << expression;
}

// U+FFFD stands for what is no text, beside what could be kept in one byte a character too.
TEST_F(ScriptValues, OfTheComponentThatAreNoTextComeAsReplacements) {
  const std::vector<ExpressionCase> cases = {
      {"a\xC3", "a\xEF\xBF\xBD"},
      {"\xC3(", "\xEF\xBF\xBD("},
      {"\xE9", "\xEF\xBF\xBD"},
      {"\x80", "\xEF\xBF\xBD"},
      {"\xC3\xA9\xC2", "\xC3\xA9\xEF\xBF\xBD"},
      {"\xC3\xA9\xC4\x80", "\xC3\xA9\xC4\x80"},
  };
  for (const auto& [given, output] : cases) {
    application_->Value("t", Variant(std::string(given)));
    EXPECT_EQ(value_of("Application('t')"), output) << output;
  }
}

// Short texts are converted on the stack, long ones beside it.
TEST_F(ScriptValues, OfAnyLengthComeThroughWhole) {
  for (const std::string_view character : {"a", "ç", "€", "😀"}) {
    std::string text = "x";
    for (const std::size_t length :
         {1U, 7U, 8U, 9U, 31U, 33U, 511U, 512U, 513U, 1023U, 1024U, 1025U, 2048U, 5000U}) {
      while (text.size() < length) text += text.size() % 3 == 0 ? character : "-";
      application_->Value("t", Variant(text));
      EXPECT_EQ(value_of("Application('t')"), text);
      EXPECT_EQ(value_of("p.Descreve(Application('t'))"), "Text " + text);
    }
  }
}

TEST_F(ScriptValues, AreWrittenAsTheComponentWritesThem) {
  const std::vector<ExpressionCase> cases = {{"1.5", "1,5"},
                                             {"1000000", "1000000"},
                                             {"null", ""},
                                             {"undefined", ""},
                                             {"true", "True"},
                                             {"new Date(2008, 2, 5)", "05/03/2008"},
                                             {"'<b>'", "<b>"},
                                             {"p", ""},
                                             {"(p.Valor = 2.5, p)", "2,5"},
                                             {"p.Nome", "sem nome"}};
  for (const auto& [expression, output] : cases)
    EXPECT_EQ(value_of(expression), output) << expression;
}

TEST_F(ScriptConventions, MembersAnswerToTheirNameInAnyCase) {
  EXPECT_EQ(value_of("(p.NOME = 'x', p.nome + p.Nome + p['nOmE'])"), "xxx");
  EXPECT_EQ(value_of("'NOME' in p && !('outro' in p)"), "True");
}

TEST_F(ScriptConventions, APropertyReadsAsAValueAndIsWrittenByAssignment) {
  EXPECT_EQ(value_of("typeof p.Nome"), "string");
  EXPECT_EQ(value_of("(p.Nome = 12.5, p.Nome)"), "12,5");
}

TEST_F(ScriptConventions, AMethodReadsAsAFunctionBoundToItsObject) {
  EXPECT_EQ(value_of("typeof p.Soma"), "function");
  EXPECT_EQ(value_of("(s => s(1, 2))(p.Soma)"), "3");
  EXPECT_EQ(value_of("[1, 2].map(n => p.Soma(n)).join()"), "11,12");
}

TEST_F(ScriptConventions, AMethodIsItsOwnWhateverWasReadBefore) {
  EXPECT_EQ(value_of("p.Soma === p.SOMA"), "True");
  EXPECT_EQ(value_of("p.Soma !== p.Descreve && p.Descreve !== p.DescreveObjeto"), "True");
  EXPECT_EQ(value_of("[p.Soma(1, 2), p.Descreve('x'), p.DescreveObjeto(p), p.Soma(3, 4)].join()"),
            "3,Text x,Object,7");
  EXPECT_EQ(value_of("((q, r) => [q.Soma !== r.Soma, q.Soma(1, 1), r.Soma(2, 2)].join())"
                     "(p, Server.CreateObject('Teste.Probe'))"),
            "true,2,4");
}

TEST_F(ScriptConventions, APropertyWithAnIndexIsCalledAndAssignedByOneArgumentMore) {
  EXPECT_EQ(value_of("(p.Campo('a', 5), p.CAMPO('a'))"), "5");
  EXPECT_EQ(value_of("(p.Campo('a', 'x'), p.Campo('b') === undefined)"), "True");
  EXPECT_EQ(value_of("(Session.Value('u', 9), Session('U'))"), "9");
  EXPECT_EQ(value_of("(Application('u', 9), Application.Value('u'))"), "9");
}

TEST_F(ScriptConventions, OneArgumentMoreReachesTheObjectThatAnIndexAnswersWith) {
  EXPECT_EQ(value_of("(p.Colecao('guardado', 8), p.Colecao('guardado').Valor)"), "8");
}

TEST_F(ScriptConventions, AnObjectWithADefaultMemberIsCallable) {
  request_->QueryString->add("x", "da pergunta");
  EXPECT_EQ(value_of("Request.QueryString('X')"), "da pergunta");
  EXPECT_EQ(value_of("Request('x')"), "da pergunta");
  EXPECT_EQ(value_of("Request.QueryString('y') === undefined"), "True");
  EXPECT_EQ(value_of("(p.Valor = 3, p())"), "3");
  EXPECT_EQ(value_of("p.Colecao('x').Nome"), "sem nome");
}

TEST_F(ScriptConventions, AnObjectGivesItsDefaultValueInTextAndNumbers) {
  const std::vector<ExpressionCase> cases = {
      {"(p.Valor = 'João', '' + p)", "João"},
      {"(p.Valor = 20, p * 2 + 2)", "42"},
      {"(p.Valor = 20, p == 20)", "True"},
      {"(p.Valor = 20, `${p}`)", "20"},
      {"(p.Valor = 20, String(p) + p.toString())", "2020"},
      {"(p.Valor = new Date(2008, 2, 5), '' + p)", "05/03/2008"},
      {"(p.Valor = [1, 2], '' + p)", "1,2"},
      {"(p.Valor = 20, JSON.stringify({ p }))", "{\"p\":20}"},
      {"'' + p.Colecao", "[object Colecao]"},
      {"Object.prototype.toString.call(p.Colecao)", "[object Colecao]"},
      {"(p.Valor = 'x', Server.HTMLEncode(p))", "x"},
      {"(p.Valor = 7, p.Descreve(p))", "Long 7"},
  };
  for (const auto& [expression, output] : cases)
    EXPECT_EQ(value_of(expression), output) << expression;
}

TEST_F(ScriptConventions, TheSameObjectIsTheSameReference) {
  EXPECT_EQ(value_of("Request.QueryString === Request.QueryString"), "True");
  EXPECT_EQ(value_of("p.Novo() === p.Novo()"), "False");
}

TEST_F(ScriptConventions, AnArgumentInAHolderIsPassedByReference) {
  EXPECT_EQ(value_of("(() => { const t = { value: 'a' }; p.Troca(t, 'b'); return t.value; })()"),
            "a!");
  EXPECT_EQ(value_of("(() => { const o = { value: 'b' }; p.Troca('a', o); return o.value; })()"),
            "b");
  EXPECT_EQ(value_of("(() => { const t = { value: 'a' };"
                     " try { p.TrocaEFalha(t); } catch (e) {} return t.value; })()"),
            "trocado");
  EXPECT_EQ(value_of("p.Descreve({ value: 5 })"), "Long 5");
}

TEST_F(ScriptConventions, WhatIsWrongWithACallHasItsNumber) {
  struct Case {
    std::string_view code;
    std::int32_t number;
  };
  const std::vector<Case> cases = {
      {"p.NaoExiste", error_number::kMemberNotFound},
      {"p.NaoExiste()", error_number::kMemberNotFound},
      {"p.NaoExiste = 1", error_number::kMemberNotFound},
      {"p.Soma = 1", error_number::kMemberNotFound},
      {"p.Nada = null", error_number::kMemberNotFound},
      {"Object.defineProperty(p, 'x', {value: 1})", error_number::kMemberNotFound},
      {"p[0]", error_number::kMemberNotFound},
      {"p.Soma()", error_number::kArgumentNotOptional},
      {"p.Soma(1, 2, 3)", error_number::kWrongArgumentCount},
      {"p.Campo('a', 1, 2)", error_number::kWrongArgumentCount},
      {"p.Soma('x')", error_number::kTypeMismatch},
      {"p.Soma(1e10)", error_number::kOverflow},
      {"p.Soma(null)", error_number::kInvalidUseOfNull},
      {"p(1)", error_number::kWrongArgumentCount},
      {"Server.CreateObject('Nao.Existe')", error_number::kCannotCreateObject},
      {"p.Estoura()", error_number::kInternal},
      {"Response.Status('x', 2)", kScriptThrownValue},
  };
  for (const auto& [code, number] : cases) {
    const std::string text = "<% 'use strict'; const p = Server.CreateObject('Teste.Probe');\n" +
                             std::string(code) + " %>";
    EXPECT_EQ(failure_of(text).number, number) << code << ": " << failures_[0].description;
  }
}

TEST_F(ScriptConventions, AnErrorOfTheComponentCanBeCaughtWithItsThreeParts) {
  EXPECT_EQ(run("<% try { Server.CreateObject('Teste.Probe').Falha(); } catch (e) { %>"
                "<%= e instanceof Error %>|<%= e.number %>|<%= e.source %>|<%= e.description %>|"
                "<%= e.message === e.description %><% } %>"),
            "True|1234|Fonte.Da.Falha|Descrição <b>da</b> falha|True");
  EXPECT_EQ(failures(), "");
}

TEST_F(ScriptConventions, AnUncaughtErrorIsTheFailureOfThePage) {
  const PageFailure failure = failure_of("a\n<% \nServer.CreateObject('Teste.Probe').Falha() %>");
  EXPECT_EQ(failure.number, 1234);
  EXPECT_EQ(failure.source, "Fonte.Da.Falha");
  EXPECT_EQ(failure.description, "Descrição <b>da</b> falha");
  EXPECT_EQ(failure.place, (SourcePlace{"/p.page", 3}));
}

TEST_F(ScriptConventions, AnErrorThrownAgainKeepsItsPlace) {
  const PageFailure failure = failure_of(
      "<% const p = Server.CreateObject('Teste.Probe');\ntry {\n p.Falha(); }\n"
      "catch (e) {\n throw e; } %>");
  EXPECT_EQ(failure.number, 1234);
  EXPECT_EQ(failure.place.line, 3);
}

TEST_F(ScriptConventions, WhatAScriptThrowsIsTheFailureWithItsPlace) {
  struct Case {
    std::string_view code;
    std::int32_t number;
    std::string_view description;
  };
  const std::vector<Case> cases = {
      {"nao_existe", kScriptUndefinedName, "nao_existe is not defined"},
      {"null.x", kScriptThrownValue, "TypeError"},
      {"throw new Error('com texto')", kScriptThrownValue, "com texto"},
      {"throw 'só texto'", kScriptThrownValue, "só texto"},
      {"throw 42", kScriptThrownValue, "42"},
      {"throw undefined", kScriptThrownValue, "undefined"},
      {"throw {}", kScriptThrownValue, ""},
      {"throw Object.assign(new Error('meu'), {number: 1001, source: 'Minha'})", 1001, "meu"},
      {"throw { get number() { while (true); } }", kScriptThrownValue, ""},
      {"(function f() { f() })()", kScriptThrownValue, "recursion"},
      {"eval('1 +')", kScriptSyntaxError, "SyntaxError"},
  };
  for (const auto& [code, number, description] : cases) {
    const PageFailure failure = failure_of("\n<% \n\n" + std::string(code) + " %>");
    EXPECT_EQ(failure.number, number) << code << ": " << failure.description;
    EXPECT_THAT(failure.description, HasSubstr(std::string(description))) << code;
    EXPECT_FALSE(failure.description.empty()) << code;
    EXPECT_EQ(failure.place.file, "/p.page") << code;
    EXPECT_EQ(failure.place.line, 4) << code;
  }
}

TEST_F(ScriptConventions, EndCannotBeCaught) {
  EXPECT_EQ(run("a<% try { Response.End(); } catch (e) { %>b<% } finally { %>c<% } %>d"), "a");
  EXPECT_EQ(failures(), "");
  EXPECT_EQ(run("a<% [1].forEach(() => { try { Server.CreateObject('Teste.Probe').Encerra(); }"
                " catch (e) { %>b<% } }) %>d"),
            "a");
  EXPECT_EQ(failures(), "");
}

TEST_F(ScriptConventions, RedirectEndsThePageAndDropsItsText) {
  EXPECT_EQ(run("a<% Response.Redirect('/b.page'); %>c"), "");
  EXPECT_EQ(failures(), "");
  EXPECT_EQ(response_->status_code(), 302);
}

TEST_F(ScriptConventions, AsyncFunctionsRunToTheirEnd) {
  EXPECT_EQ(run("<% const p = Server.CreateObject('Teste.Probe');"
                "(async () => { for (let i = 0; i < 3; ++i) { await null; Response.Write(i); }"
                " await p; Response.Write('fim'); })(); %>antes "),
            "antes 012fim");
  EXPECT_EQ(failures(), "");
}

TEST_F(ScriptConventions, APromiseThatNobodyHandlesFailsThePage) {
  const PageFailure failure = failure_of("<% (async () => {\n await null;\n nao_existe; })(); %>");
  EXPECT_EQ(failure.number, kScriptUndefinedName);
  EXPECT_EQ(failure.place, (SourcePlace{"/p.page", 3}));
  EXPECT_EQ(run("<% Promise.reject(1).catch(() => Response.Write('tratado')) %>"), "tratado");
  EXPECT_EQ(failures(), "");
}

TEST_F(ScriptConventions, EndInsideAnAsyncFunctionEndsThePage) {
  EXPECT_EQ(run("<% (async () => { await null; Response.Write('a'); Response.End(); })()"
                ".then(() => Response.Write('b'), () => Response.Write('c')); %>"),
            "a");
  EXPECT_EQ(failures(), "");
}

}  // namespace
}  // namespace pelm::host
