#pragma once
// The home category templates request ("getCategorTemplates1", the server's spelling).
// A received answer is saved whole under "templates" so that the next start shows it.
#include <string>
#include <vector>

#include "core/request/net_api.h"
#include "core/session/search_type_model.h"

namespace qmv {

class TemplatesNetApi : public NetApi<TemplatesNetApi> {
 public:
  TemplatesNetApi() = default;

  std::string requestUrl() const override { return "getCategorTemplates1"; }
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  Json requestArgument() const override { return Json::object(); }

  // On a finished request: when "data" is an object, saves the response text under
  // "templates" and synchronises; returns one record per "data"."dataList" element.
  std::vector<SearchTypeModel> templatesFromResponse() const;  // the system's getTemplatesFromResopnse
  // Merges templates into the session's home categories (GlobalData::mergeTemplates).
  static void resetTemplates(const std::vector<SearchTypeModel>& templates);
  static const SearchTypeModel* getInfoWithName(const std::string& name, const std::vector<SearchTypeModel>& list);
};

}  // namespace qmv
