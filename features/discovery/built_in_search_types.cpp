#include "features/discovery/built_in_search_types.h"

namespace qmv {

std::string_view builtInSearchTypesText() {
  static constexpr std::string_view kText = R"json({"success":"0","message":"","data":{"dataList":[
    {"id":"0","name":"全部分类","list":[]},
    {"id":"10","name":"美食","list":[{"id":"10","name":"全部"},{"id":"11","name":"火锅"},{"id":"12","name":"自助餐"},{"id":"13","name":"小吃快餐"},{"id":"14","name":"甜品饮品"},{"id":"15","name":"生日蛋糕"},{"id":"16","name":"聚餐宴请"},{"id":"18","name":"烧烤烤肉"},{"id":"17","name":"其他"}]},
    {"id":"20","name":"健康","list":[{"id":"20","name":"全部"},{"id":"21","name":"足疗按摩"},{"id":"22","name":"运动健身"},{"id":"24","name":"洗浴汗蒸"},{"id":"23","name":"其他"}]},
    {"id":"30","name":"休闲娱乐","list":[{"id":"30","name":"全部"},{"id":"31","name":"电影"},{"id":"32","name":"KTV"},{"id":"33","name":"酒吧咖啡"},{"id":"35","name":"桌游电玩"},{"id":"34","name":"其他"}]},
    {"id":"40","name":"丽人","list":[{"id":"40","name":"全部"},{"id":"41","name":"舞蹈"},{"id":"42","name":"美发"},{"id":"43","name":"美甲"},{"id":"44","name":"美容美体"},{"id":"45","name":"其他"}]},
    {"id":"50","name":"生活服务","list":[{"id":"50","name":"全部"},{"id":"51","name":"鲜花"},{"id":"52","name":"汽车服务"},{"id":"53","name":"培训课程"},{"id":"54","name":"母婴亲子"},{"id":"55","name":"摄影写真"},{"id":"56","name":"其他"}]},
    {"id":"60","name":"酒店","list":[{"id":"60","name":"全部"},{"id":"61","name":"其他"}]},
    {"id":"70","name":"特产","list":[{"id":"70","name":"全部"},{"id":"71","name":"其他"}]},
    {"id":"80","name":"其他","list":[{"id":"80","name":"全部"},{"id":"81","name":"其他"}]}
]}})json";
  return kText;
}

}  // namespace qmv
