// Calls that need no database: by the way they are made, and by what they reckon.
//
// "call/…" is one member called from C++, by its name, and through the C interface; the rest are
// single operations.
#include <benchmark/benchmark.h>

#include <array>
#include <cstdlib>
#include <memory>
#include <string>

#include "automation/dispatch.h"
#include "pelm/base.h"
#include "pelm/calendario.h"
#include "pelm/page_scope.h"
#include "pelm/pelm_c.h"

namespace pelm::bench {
namespace {

constexpr std::int32_t kNumberType = 1014;

void call_directly(benchmark::State& state) {
  const Base base;
  std::int32_t type = kNumberType;
  for (auto _ : state) {
    benchmark::DoNotOptimize(type);
    benchmark::DoNotOptimize(base.tipo_aditivo(type));
  }
}

void call_by_name(benchmark::State& state) {
  const auto base = std::make_shared<Base>();
  for (auto _ : state) {
    std::array<OptionalArg, 1> arguments{Variant(kNumberType)};
    benchmark::DoNotOptimize(automation::call(*base, "tipo_aditivo", arguments));
  }
}

void call_through_c(benchmark::State& state) {
  pelm_object base = 0;
  if (pelm_create("PelmComum2008.CMain", &base) != 0) std::abort();
  pelm_value held = PELM_EMPTY_VALUE;
  if (pelm_get(base, "CBase", nullptr, 0, &held) != 0) std::abort();
  for (auto _ : state) {
    pelm_value type = PELM_EMPTY_VALUE;
    type.type = PELM_LONG;
    type.as.integer = kNumberType;
    pelm_value result = PELM_EMPTY_VALUE;
    if (pelm_call(held.as.object, "tipo_aditivo", &type, 1, nullptr, &result) != 0) std::abort();
    benchmark::DoNotOptimize(result);
    pelm_value_clear(&result);
  }
  pelm_value_clear(&held);
  pelm_end(base);
  pelm_release(base);
}

constexpr const char* kBillingBarcode = "00193373700000001000500940144816060680935031";
constexpr const char* kCollectionBarcode = "82670000000180201750042016011520160159000000";
constexpr const char* kTypedLine = "00190500954014481606906809350314337370000000100";

// Each check cuts its digit out of the text it is given, so each is given a copy.
template <class Check>
void barcode(benchmark::State& state, const char* digits, Check check) {
  const Base base;
  const std::string given = digits;
  std::string code;
  bool all_right = true;
  for (auto _ : state) {
    code = given;
    all_right = check(base, code);
    benchmark::DoNotOptimize(all_right);
  }
}

void calendar_month(benchmark::State& state) {
  std::size_t written = 0;
  const PageScope page(
      nullptr, [&](std::string_view text) { written += text.size(); }, "date=05/03/2008&campo=c");
  Calendario calendar;
  calendar.OnStartPage(page.context());
  calendar.ScriptName("calendario.page");
  for (auto _ : state) calendar.ShowCalendar();
  if (written == 0) state.SkipWithError("nothing was written");
}

void add_benchmarks() {
  benchmark::RegisterBenchmark("call/direct", call_directly);
  benchmark::RegisterBenchmark("call/by_name", call_by_name);
  benchmark::RegisterBenchmark("call/c_interface", call_through_c);
  benchmark::RegisterBenchmark("barcode/billing", [](benchmark::State& state) {
    barcode(state, kBillingBarcode,
            [](const Base& b, std::string& code) { return b.fCalcularDV11_Cobranca(code); });
  });
  benchmark::RegisterBenchmark("barcode/collection", [](benchmark::State& state) {
    barcode(state, kCollectionBarcode, [](const Base& b, std::string& code) {
      return b.fCalcularDV10_GeralArrecadacao(code);
    });
  });
  benchmark::RegisterBenchmark("barcode/typed_line", [](benchmark::State& state) {
    barcode(state, kTypedLine,
            [](const Base& b, std::string& code) { return b.fCalcularDV10_Cobranca(code); });
  });
  benchmark::RegisterBenchmark("calendar/month", calendar_month);
}

}  // namespace
}  // namespace pelm::bench

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  pelm::bench::add_benchmarks();
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
}
