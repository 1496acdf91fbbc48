#include "features/wheel/wheel_model.h"

#include "core/common/dictionary.h"

namespace qmv {

WheelModel::WheelModel(const Json& dic)
    : wheelId(strForKey(dic, "id")),
      leftCount(strForKey(dic, "leftCount")),
      imgURL(strForKey(dic, "imgURL")),
      rule(strForKey(dic, "rule")),
      itemCount(strForKey(dic, "itemCount")),
      resultIndex(strForKey(dic, "index")),
      result(strForKey(dic, "result")) {
  const std::string time = strForKey(dic, "time");
  const auto bar = time.find('|');
  if (bar != std::string::npos && time.find('|', bar + 1) == std::string::npos) {
    timeStart = time.substr(0, bar);
    timeEnd = time.substr(bar + 1);
  }
}

std::optional<WheelModel> WheelModel::fromData(const Json& data) {
  if (!data.is_object()) return std::nullopt;
  return WheelModel(data);
}

}  // namespace qmv
