// Decoding one page of a store search (100 stores, bench/search_page.h) from its
// response text into StoreInfoModel records, address heights included. Fixed text
// metrics keep font layout out of the figure.
#include <benchmark/benchmark.h>

#include <string>

#include "bench/search_page.h"
#include "core/common/json.h"
#include "features/discovery/store_info_model.h"
#include "platform/fixed_metrics_text_measurer.h"

namespace qmv {
namespace {

using bench::searchPage;

void BM_DecodeSearchPage(benchmark::State& state) {
  const std::string text = searchPage();
  FixedMetricsTextMeasurer measurer;
  std::size_t decoded = 0;
  for (auto _ : state) {
    const Json response = parseJson(text);
    const Json& data = response["data"];
    std::vector<StoreInfoModel> stores = StoreInfoModel::listWithArray(data.is_object() ? data["dataList"] : Json());
    for (StoreInfoModel& store : stores) store.setAddressHeight(measurer);
    decoded += stores.size();
    benchmark::DoNotOptimize(stores.data());
  }
  if (decoded != 100 * static_cast<std::size_t>(state.iterations()))
    state.SkipWithError("page did not decode to 100 stores");
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * text.size()));
  state.counters["page_bytes"] = static_cast<double>(text.size());
  state.counters["stores/s"] = benchmark::Counter(static_cast<double>(decoded), benchmark::Counter::kIsRate);
}

// The records alone, from an already parsed page: the share of the reading rules.
void BM_RecordsFromParsedPage(benchmark::State& state) {
  const std::string text = searchPage();
  const Json response = parseJson(text);
  FixedMetricsTextMeasurer measurer;
  for (auto _ : state) {
    std::vector<StoreInfoModel> stores = StoreInfoModel::listWithArray(response["data"]["dataList"]);
    for (StoreInfoModel& store : stores) store.setAddressHeight(measurer);
    benchmark::DoNotOptimize(stores.data());
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * text.size()));
}

BENCHMARK(BM_DecodeSearchPage);
BENCHMARK(BM_RecordsFromParsedPage);

}  // namespace
}  // namespace qmv

BENCHMARK_MAIN();
