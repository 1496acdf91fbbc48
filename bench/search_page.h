#pragma once
// One page of a store search (100 stores, as the server sends them), shared by the
// benchmarks that decode it and that time the interface loop while it arrives.
#include <string>

#include "core/common/json.h"

namespace qmv::bench {

inline const char* const kStreets[] = {"沂蒙路", "金雀山路", "解放路", "通达路", "北京路", "蒙山大道", "兰山路", "涑河北街"};
inline const char* const kNames[] = {"沂蒙小馆", "老街烧烤", "川味火锅", "金鼎足浴",
                              "阳光影城", "蓝海KTV",  "悦享咖啡", "全家福大酒店"};

inline Json offer(int store, int index) {
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

inline std::string searchPage() {
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

}  // namespace qmv::bench
