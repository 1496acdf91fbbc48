#include "apps/sandbox/demo_catalogue.h"

#include <initializer_list>
#include <string>
#include <utility>

namespace qmv::sandbox {
namespace {

Json category(int id, const char* name, std::initializer_list<std::pair<int, const char*>> subs) {
  Json list = Json::array();
  for (const auto& [subId, subName] : subs) {
    list.push_back({{"id", std::to_string(subId)},
                    {"name", subName},
                    {"imgURL", "/oss/art/category_" + std::to_string(subId) + ".png"}});
  }
  return {{"id", std::to_string(id)}, {"name", name}, {"list", list}};
}

}  // namespace

Json catalogue() {
  return Json::array({
      category(0, "全部分类", {}),
      category(10, "美食",
               {{10, "全部"},
                {11, "火锅"},
                {12, "自助餐"},
                {13, "小吃快餐"},
                {14, "甜品饮品"},
                {15, "生日蛋糕"},
                {16, "聚餐宴请"},
                {18, "烧烤烤肉"},
                {17, "其他"}}),
      category(20, "健康", {{20, "全部"}, {21, "足疗按摩"}, {22, "运动健身"}, {24, "洗浴汗蒸"}, {23, "其他"}}),
      category(30, "休闲娱乐",
               {{30, "全部"}, {31, "电影"}, {32, "KTV"}, {33, "酒吧咖啡"}, {35, "桌游电玩"}, {34, "其他"}}),
      category(40, "丽人", {{40, "全部"}, {41, "舞蹈"}, {42, "美发"}, {43, "美甲"}, {44, "美容美体"}, {45, "其他"}}),
      category(50, "生活服务",
               {{50, "全部"},
                {51, "鲜花"},
                {52, "汽车服务"},
                {53, "培训课程"},
                {54, "母婴亲子"},
                {55, "摄影写真"},
                {56, "其他"}}),
      category(60, "酒店", {{60, "全部"}, {61, "其他"}}),
      category(70, "特产", {{70, "全部"}, {71, "其他"}}),
      category(80, "其他", {{80, "全部"}, {81, "其他"}}),
  });
}

Json templates() {
  return Json::array({
      category(1, "餐饮美食",
               {{11, "火锅"},
                {12, "自助餐"},
                {13, "小吃快餐"},
                {18, "烧烤烤肉"},
                {16, "聚餐宴请"},
                {14, "甜品饮品"},
                {15, "生日蛋糕"}}),
      // The home page opens a template entry by its id, so each id is the catalogue's
      // entry of that name.
      category(2, "休闲娱乐",
               {{32, "KTV"},
                {21, "足疗按摩"},
                {35, "桌游电玩"},
                {24, "洗浴汗蒸"},
                {31, "电影"},
                {22, "运动健身"},
                {33, "酒吧咖啡"}}),
      category(3, "丽人美妆", {{42, "美发"}, {43, "美甲"}, {44, "美体"}, {41, "舞蹈"}}),
      category(4, "最新发现", {{1000, "旅游"}, {60, "酒店"}, {50, "生活服务"}, {70, "特产"}}),
      category(5, "专属活动", {{1001, "幸运抽奖"}, {1002, "一元夺宝"}, {1003, "网上商城"}, {1004, "沙龙活动"}}),
  });
}

}  // namespace qmv::sandbox
