#include "features/discovery/bookmark_answer.h"

#include "core/common/dictionary.h"
#include "core/common/json.h"

namespace qmv {

std::string favoriteInAnswer(const std::string& responseString) {
  const Json envelope = parseJson(responseString);
  const Json data = envelope.is_object() ? envelope.value("data", Json()) : Json();
  return strForKey(data, "favorite");
}

}  // namespace qmv
