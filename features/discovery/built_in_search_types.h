#pragma once
// The category catalogue shipped with the client, used until the server's list has
// been saved. It is a whole response envelope so that it reads exactly like a saved
// answer of "getCategoryList". Ids and the order inside each list are data: a higher
// id before a lower one is intended.
#include <string_view>

namespace qmv {

std::string_view builtInSearchTypesText();

}  // namespace qmv
