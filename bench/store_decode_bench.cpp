// Decoding one page of a store search (100 stores, as the server sends them) from its
// response text into StoreInfoModel records, address heights included. Fixed text
// metrics keep font layout out of the figure.
#include <benchmark/benchmark.h>

#include <string>

#include "core/common/json.h"
#include "features/discovery/store_info_model.h"
#include "platform/fixed_metrics_text_measurer.h"

namespace qmv {
namespace {

const char* const kStreets[] = {"沂蒙路", "金雀山路", "解放路", "通达路", "北京路", "蒙山大道", "兰山路", "涑河北街"};
const char* const kNames[] = {"沂蒙小馆", "老街烧烤", "川味火锅", "金鼎足浴",
                              "阳光影城", "蓝海KTV",  "悦享咖啡", "全家福大酒店"};

Json offer(int store, int index) {
  return Json{
      {"commodityId", store * 10 + index},
      {"name", std::string(kNames[(store + index) % 8]) + "双人套餐"},
      {"storeId", std::to_string(store)},
      {"imageURL", "http://img.example.com/commodity/" + std::to_string(store * 10 + index) + ".jpg"},
      {"nowPrice", "39.9"},
      {"price", 88},
      {"num", 120 + index},
      {"firstPrice", "19.9"},
      {"isFirst", "1"},
      {"hasImage", "0"},
      {"date", "2026-01-01至2026-12-31"},
      {"time", "10:00-22:00"},
      {"ruleList", Json::array({{{"rule", "周末节假日通用"}}, {{"rule", "不可与其他优惠同享"}}})},
      {"taocanList", Json::array({{{"title", "套餐内容"},
                                   {"contentList",
                                    Json::array({{{"commodity", "招牌烤鱼"}, {"amount", "1份"}, {"price", "68"}}})}}})},
      {"remarkList", Json::array({{{"remark", "请提前一天预约"}}})}};
}

std::string searchPage() {
  Json stores = Json::array();
  for (int i = 0; i < 100; ++i) {
    std::string address = "山东省临沂市兰山区";
    for (int part = 0; part <= i % 3; ++part)
      address += std::string(kStreets[(i + part) % 8]) + std::to_string(10 + i) + "号";
    Json commodities = Json::array();
    for (int n = 0; n < i % 4; ++n) commodities.push_back(offer(i, n));
    stores.push_back(
        Json{{"storeId", 10000 + i},
             {"storeName", kNames[i % 8]},
             {"imageURL", "http://img.example.com/store/" + std::to_string(i) + "a.jpg|http://img.example.com/store/" +
                              std::to_string(i) + "b.jpg|http://img.example.com/store/" + std::to_string(i) + "c.jpg"},
             {"address", address},
             {"content", "环境优雅，服务周到，停车方便。"},
             {"title", "新店开业全场八折"},
             {"time", "09:00-22:00"},
             {"phone", "0539-8" + std::to_string(100000 + i)},
             {"favorite", i % 2 ? "1" : "0"},
             {"price", 30 + i % 50},
             {"shopPrice", std::to_string(60 + i % 50) + ".00"},
             {"mark", 4.5},
             {"star", "4"},
             {"num", 1000 + i * 7},
             {"starNum", i * 3},
             {"isFirst", nullptr},
             {"coordinate", std::to_string(118.3 + i * 0.001) + "," + std::to_string(35.05 + i * 0.001)},
             {"commodityList", commodities}});
  }
  const Json response{{"success", "0"}, {"message", ""}, {"data", {{"count", 1000}, {"dataList", stores}}}};
  return response.dump();
}

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
