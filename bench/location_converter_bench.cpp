// Conversions per second for each direction of the location converter, over positions
// spread across China (the search inverse is the expensive one).
#include <benchmark/benchmark.h>

#include <vector>

#include "features/discovery/location_converter.h"

namespace qmv {
namespace {

std::vector<Coordinate> positions() {
  std::vector<Coordinate> result;
  for (int i = 0; i < 64; ++i) {
    result.push_back({18.0 + (i * 37 % 64) * 0.5, 80.0 + (i * 23 % 64) * 0.8});
  }
  return result;
}

template <Coordinate (*Convert)(Coordinate)>
void convert(benchmark::State& state) {
  const std::vector<Coordinate> inputs = positions();
  std::size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(Convert(inputs[i++ % inputs.size()]));
  }
  state.SetItemsProcessed(state.iterations());
}

void BM_WGSToGCJ(benchmark::State& state) { convert<&LocationConverter::transformFromWGSToGCJ>(state); }
void BM_GCJToWGS(benchmark::State& state) { convert<&LocationConverter::transformFromGCJToWGS>(state); }
void BM_GCJToBaidu(benchmark::State& state) { convert<&LocationConverter::transformFromGCJToBaidu>(state); }
void BM_BaiduToGCJ(benchmark::State& state) { convert<&LocationConverter::transformFromBaiduToGCJ>(state); }

// The full request position text: WGS-84 -> GCJ-02 -> BD-09, formatted.
void BM_CoordinateArgument(benchmark::State& state) {
  const std::vector<Coordinate> inputs = positions();
  std::size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(LocationConverter::coordinateArgument(inputs[i++ % inputs.size()]));
  }
  state.SetItemsProcessed(state.iterations());
}

BENCHMARK(BM_WGSToGCJ);
BENCHMARK(BM_GCJToWGS);
BENCHMARK(BM_GCJToBaidu);
BENCHMARK(BM_BaiduToGCJ);
BENCHMARK(BM_CoordinateArgument);

}  // namespace
}  // namespace qmv

BENCHMARK_MAIN();
