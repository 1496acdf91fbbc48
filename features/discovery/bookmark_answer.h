#pragma once
// What both bookmark toggles answer: the state the bookmark is in now.
#include <string>

namespace qmv {

// "data"."favorite" of a bookmark answer ("1" bookmarked, "0" not), or "" when the answer
// does not say.
std::string favoriteInAnswer(const std::string& responseString);

}  // namespace qmv
