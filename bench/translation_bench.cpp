// How fast the translation is: nothing to do, each form that ends, and the literal steps below.
//
// Bytes a second of the text that goes in. The copy of the text that each round needs is part of
// the time, as it is for a caller who keeps the original.
#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "data/literal_translation.h"
#include "data/sql_translation.h"

namespace {

constexpr std::size_t kLong = 100'000;

std::string repeated(std::string_view piece, std::size_t size) {
  std::string text;
  while (text.size() < size) text.append(piece);
  return text;
}

void count_bytes(benchmark::State& state, const std::string& sql) {
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * sql.size()));
}

void translate(benchmark::State& state, const std::string& sql) {
  if (!pelm::data::translation_ends(sql)) return state.SkipWithError("never ends");
  std::string text;
  for (auto _ : state) {
    text = sql;
    pelm::data::translate_sql(text, "Oracle");
    benchmark::DoNotOptimize(text.data());
  }
  count_bytes(state, sql);
}

void translate_literally(benchmark::State& state, const std::string& sql) {
  for (auto _ : state) benchmark::DoNotOptimize(pelm::data::literal::translate(sql));
  count_bytes(state, sql);
}

void copy(benchmark::State& state, const std::string& sql) {
  std::string text;
  for (auto _ : state) {
    text = sql;
    benchmark::DoNotOptimize(text.data());
  }
  count_bytes(state, sql);
}

void scan(benchmark::State& state, const std::string& sql) {
  for (auto _ : state) benchmark::DoNotOptimize(std::memchr(sql.data(), '*', sql.size()));
  count_bytes(state, sql);
}

struct Form {
  const char* name;
  const char* piece;
};

constexpr Form kForms[] = {
    {"right_join", "a.x =* b.y and "},
    {"left_join_to_and", "a.x *= b.y and "},
    {"left_join_to_the_end", "a.x *= b.y or "},
    {"concatenation", "nome+' '+sobrenome, "},
    {"space", "space(10), "},
    {"datepart", "(datepart(dd,criado)), "},
    {"substring", "substring(nome,1,2), "},
    {"getdate", "f(getdate()), "},
    {"convert_integer", "(convert(integer,valor)), "},
    {"isnull", "isnull(nome,''), "},
    {"left", "left(nome, 3), "},
};

constexpr std::string_view kStatement =
    "select i.OID, i.NOME from item i, agrupamento a where i.OID = a.RITEM and a.RESCOPO = 7 "
    "and i.EXCLUIDO = 0 order by i.NOME";

constexpr std::string_view kMarked = "select count(*), max(a.x + 1) from t where (a.x > 0) ";

void add_benchmarks() {
  const std::string plain = repeated(kStatement, kLong);
  benchmark::RegisterBenchmark("nothing/100kB", translate, plain);
  benchmark::RegisterBenchmark("nothing/100kB/copy_alone", copy, plain);
  benchmark::RegisterBenchmark("nothing/100kB/scan_alone", scan, plain);
  benchmark::RegisterBenchmark("nothing/100kB/with_marks", translate, repeated(kMarked, kLong));
  benchmark::RegisterBenchmark("nothing/statement", translate, std::string(kStatement));
  benchmark::RegisterBenchmark("nothing/statement/copy_alone", copy, std::string(kStatement));
  benchmark::RegisterBenchmark("nothing/statement/literal", translate_literally,
                               std::string(kStatement));
  for (const Form& form : kForms) {
    const std::string name = form.name;
    benchmark::RegisterBenchmark((name + "/100kB").c_str(), translate, repeated(form.piece, kLong));
    benchmark::RegisterBenchmark((name + "/2kB").c_str(), translate, repeated(form.piece, 2'000));
    // The literal steps are quadratic: at 100 kB some take minutes.
    benchmark::RegisterBenchmark((name + "/2kB/literal").c_str(), translate_literally,
                                 repeated(form.piece, 2'000));
  }
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  add_benchmarks();
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
