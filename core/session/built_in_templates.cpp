#include "core/session/built_in_templates.h"

namespace qmv {

std::string_view builtInTemplatesEarlierText() {
  static constexpr std::string_view kText = R"json({"success":"0","message":"","data":{"dataList":[
    {"id":"1","name":"餐饮美食","list":[{"id":"11","name":"火锅"},{"id":"12","name":"自助餐"},{"id":"13","name":"小吃快餐"},{"id":"18","name":"烧烤烤肉"},{"id":"16","name":"聚餐宴请"},{"id":"14","name":"甜品饮品"},{"id":"15","name":"生日蛋糕"}]},
    {"id":"2","name":"休闲娱乐","list":[{"id":"31","name":"KTV"},{"id":"32","name":"足疗按摩"},{"id":"21","name":"桌游电玩"},{"id":"24","name":"洗浴汗蒸"},{"id":"22","name":"电影"},{"id":"35","name":"运动健身"},{"id":"33","name":"酒吧咖啡"}]},
    {"id":"3","name":"丽人美妆","list":[{"id":"42","name":"美发"},{"id":"43","name":"美甲"},{"id":"44","name":"美体"},{"id":"41","name":"舞蹈"}]},
    {"id":"4","name":"最新发现","list":[{"id":"1000","name":"旅游"},{"id":"60","name":"酒店"},{"id":"50","name":"生活服务"},{"id":"70","name":"特产"}]},
    {"id":"5","name":"专属活动","list":[{"id":"1001","name":"幸运抽奖"},{"id":"1002","name":"代理商加盟"},{"id":"1003","name":""},{"id":"1004","name":""}]}
]}})json";
  return kText;
}

std::string_view builtInTemplatesLaterText() {
  static constexpr std::string_view kText = R"json({"success":"0","message":"","data":{"dataList":[
    {"id":"1","name":"餐饮美食","list":[{"id":"11","name":"火锅"},{"id":"12","name":"自助餐"},{"id":"13","name":"小吃快餐"},{"id":"18","name":"烧烤烤肉"},{"id":"16","name":"聚餐宴请"},{"id":"14","name":"甜品饮品"},{"id":"15","name":"生日蛋糕"}]},
    {"id":"2","name":"休闲娱乐","list":[{"id":"31","name":"KTV"},{"id":"32","name":"足疗按摩"},{"id":"21","name":"桌游电玩"},{"id":"24","name":"洗浴汗蒸"},{"id":"22","name":"电影"},{"id":"35","name":"运动健身"},{"id":"33","name":"酒吧咖啡"}]},
    {"id":"3","name":"丽人美妆","list":[{"id":"42","name":"美发"},{"id":"43","name":"美甲"},{"id":"44","name":"美体"},{"id":"41","name":"舞蹈"}]},
    {"id":"4","name":"最新发现","list":[{"id":"1000","name":"旅游"},{"id":"60","name":"酒店"},{"id":"50","name":"生活服务"},{"id":"70","name":"特产"}]},
    {"id":"5","name":"专属活动","list":[{"id":"1001","name":"幸运抽奖"},{"id":"1002","name":"一元夺宝"},{"id":"1003","name":"网上商城"},{"id":"1004","name":"沙龙活动"}]}
]}})json";
  return kText;
}

}  // namespace qmv
