#pragma once
// The category catalogue request ("getCategoryList"), and the reading of the catalogue
// the client uses: the one saved under "SearchTypes", else the built-in one.
#include <string>
#include <string_view>
#include <vector>

#include "core/request/net_api.h"
#include "core/session/search_type_model.h"

namespace qmv {

class SearchTypeNetApi : public NetApi<SearchTypeNetApi> {
 public:
  SearchTypeNetApi() = default;

  std::string requestUrl() const override { return "getCategoryList"; }
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  Json requestArgument() const override { return Json::object(); }

  // The saved catalogue when one is stored and readable, else the built-in one.
  static std::vector<SearchTypeModel> getSearchTypes();
  // One record per element of "data"."dataList" of an envelope text; empty when "data"
  // is not an object.
  static std::vector<SearchTypeModel> getSearchTypeWithJsonStr(std::string_view text);
};

}  // namespace qmv
