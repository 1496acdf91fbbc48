#pragma once
// The prize wheel: the current wheel of "getWheels", or the outcome of one spin of
// "getWheelResult" (which adds the drawn sector and prize). Every field is text read with
// strForKey. The period comes from "time" as "start|end": both ends are set only when
// the text splits into exactly two parts, otherwise both stay unset.
#include <optional>
#include <string>

#include "core/common/base_model.h"
#include "core/common/json.h"

namespace qmv {

class WheelModel : public BaseModel {
 public:
  WheelModel() = default;
  explicit WheelModel(const Json& dic);

  // The record of a response's "data": one when it is a JSON object, else none.
  static std::optional<WheelModel> fromData(const Json& data);

  std::string wheelId;  // "id": sent back as "id" when drawing
  std::string leftCount;
  std::optional<std::string> timeStart;
  std::optional<std::string> timeEnd;
  std::string imgURL;
  std::string rule;
  std::string itemCount;
  std::string resultIndex;      // "index": the sector the spin stops on
  std::string lastIndex = "0";  // the sector the pointer rests on before a spin
  std::string result;           // the prize text
};

}  // namespace qmv
