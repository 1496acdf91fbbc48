// Look-up costs on the shipped databases: the city picker's grouping and the bank name of
// a card number (found at a 6-digit prefix, and not found at all, which tries every length).
#include <benchmark/benchmark.h>

#include "core/storage/db_util.h"
#include "platform/testing/temp_home.h"

namespace qmv {
namespace {

void BM_GetAllCity(benchmark::State& state) {
  std::size_t cities = 0;
  for (auto _ : state) {
    const auto all = DBUtil::getAllCity();
    cities = 0;
    for (const auto& [letter, group] : all) cities += group.size();
    benchmark::DoNotOptimize(cities);
  }
  state.counters["cities"] = static_cast<double>(cities);
}
BENCHMARK(BM_GetAllCity)->Unit(benchmark::kMillisecond);

void BM_GetBankNameFound(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(DBUtil::getBankNameWithBankNum("6222020200112233446"));
}
BENCHMARK(BM_GetBankNameFound)->Unit(benchmark::kMicrosecond);

void BM_GetBankNameNotFound(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(DBUtil::getBankNameWithBankNum("0000000000000000"));
}
BENCHMARK(BM_GetBankNameNotFound)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace qmv

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  qmv::TempHome home;  // resources from $QMV_RESOURCE_DIR or the build tree
  if (!qmv::DBUtil::getCityWithName("临沂市")) {
    std::fprintf(stderr, "shipped area.db not found under %s\n", home.files()->resourceDirectory().c_str());
    return 1;
  }
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  qmv::DBUtil::resetManagersForTesting();
  return 0;
}
