#pragma once
// Readers shared by the endpoints that answer a page of stores: "data" holds "dataList"
// (the stores) and, for paged lists, "count" (how many there are in all).
#include <string_view>
#include <vector>

#include "core/common/json.h"
#include "features/discovery/store_info_model.h"

namespace qmv {

// Stores of data."dataList"; none when `data` is not an object or the list not an array.
std::vector<StoreInfoModel> storesOfData(const Json& data);

// The stores of a whole answer's text, as storesOfData gives them for its "data": read in
// place, without building the answer's Json tree, whenever parseJson would read the text
// the same way. `listRead`, when given, tells whether the answer had a "data" object with
// a "dataList" array.
std::vector<StoreInfoModel> storesOfAnswer(std::string_view text, bool* listRead = nullptr);

// data."count" as an integer (a number, or text holding one); 0 otherwise.
long countOfData(const Json& data);

}  // namespace qmv
