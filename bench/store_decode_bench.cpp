// Decoding one page of a store search (100 stores, bench/search_page.h) from its
// response text into StoreInfoModel records, address heights included, the way the
// search reads its answer (storesOfAnswer). Fixed text metrics keep font layout out of
// the figure. The other benchmarks weigh the ways the page could be read: through the
// Json tree, nlohmann's own parser and its bare lexer (the floor of any nlohmann SAX
// reader), and simdjson's parse alone.
#include <benchmark/benchmark.h>
#include <simdjson.h>

#include <string>

#include "bench/search_page.h"
#include "core/common/json.h"
#include "features/discovery/store_info_model.h"
#include "features/discovery/store_list_reader.h"
#include "platform/fixed_metrics_text_measurer.h"

namespace qmv {
namespace {

using bench::searchPage;

template <std::vector<StoreInfoModel> (*Decode)(const std::string&)>
void decodePage(benchmark::State& state) {
  const std::string text = searchPage();
  FixedMetricsTextMeasurer measurer;
  std::size_t decoded = 0;
  for (auto _ : state) {
    std::vector<StoreInfoModel> stores = Decode(text);
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

std::vector<StoreInfoModel> inPlace(const std::string& text) { return storesOfAnswer(text); }

std::vector<StoreInfoModel> throughTree(const std::string& text) {
  const Json response = parseJson(text);
  const Json& data = response["data"];
  return StoreInfoModel::listWithArray(data.is_object() ? data["dataList"] : Json());
}

void BM_DecodeSearchPage(benchmark::State& state) { decodePage<&inPlace>(state); }
void BM_DecodeSearchPageThroughTree(benchmark::State& state) { decodePage<&throughTree>(state); }

// Parsing alone, by each reader.
template <typename Parse>
void parsePage(benchmark::State& state, Parse parse) {
  const std::string text = searchPage();
  for (auto _ : state) benchmark::DoNotOptimize(parse(text));
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * text.size()));
}

void BM_ParseJsonTree(benchmark::State& state) {
  parsePage(state, [](const std::string& text) { return parseJson(text).size(); });
}
void BM_ParseNlohmannTree(benchmark::State& state) {
  parsePage(state, [](const std::string& text) { return Json::parse(text, nullptr, false).size(); });
}
void BM_LexNlohmannSax(benchmark::State& state) {
  // A handler that keeps nothing: what any reader on nlohmann's SAX interface pays at least.
  struct Nothing : nlohmann::json_sax<Json> {
    bool null() override { return true; }
    bool boolean(bool) override { return true; }
    bool number_integer(number_integer_t) override { return true; }
    bool number_unsigned(number_unsigned_t) override { return true; }
    bool number_float(number_float_t, const string_t&) override { return true; }
    bool string(string_t&) override { return true; }
    bool binary(binary_t&) override { return true; }
    bool start_object(std::size_t) override { return true; }
    bool key(string_t&) override { return true; }
    bool end_object() override { return true; }
    bool start_array(std::size_t) override { return true; }
    bool end_array() override { return true; }
    bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception&) override { return false; }
  };
  parsePage(state, [](const std::string& text) {
    Nothing nothing;
    return Json::sax_parse(text, &nothing);
  });
}
void BM_ParseSimdjson(benchmark::State& state) {
  simdjson::dom::parser parser;
  const simdjson::padded_string padded(searchPage());
  parsePage(state, [&parser, &padded](const std::string&) { return parser.parse(padded).error(); });
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
BENCHMARK(BM_DecodeSearchPageThroughTree);
BENCHMARK(BM_ParseJsonTree);
BENCHMARK(BM_ParseNlohmannTree);
BENCHMARK(BM_LexNlohmannSax);
BENCHMARK(BM_ParseSimdjson);
BENCHMARK(BM_RecordsFromParsedPage);

}  // namespace
}  // namespace qmv

BENCHMARK_MAIN();
