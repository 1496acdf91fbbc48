#pragma once
// Reads category records out of an envelope text (the catalogue and the home templates
// share one shape: "data" -> "dataList" -> groups with "id", "name" and "list").
#include <string_view>
#include <vector>

#include "core/session/search_type_model.h"

namespace qmv {

// One record per element of "data"."dataList"; empty when the text is not JSON, "data"
// is not an object or "dataList" is not an array.
std::vector<SearchTypeModel> searchTypesFromEnvelope(std::string_view text);

}  // namespace qmv
