#pragma once
// The home page's banners ("getCarouselList").
#include <string>
#include <vector>

#include "core/request/net_api.h"
#include "features/discovery/resource_model.h"

namespace qmv {

class ResourcesNetApi : public NetApi<ResourcesNetApi> {
 public:
  ResourcesNetApi() = default;

  std::string requestUrl() const override { return "getCarouselList"; }
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  Json requestArgument() const override { return Json::object(); }

  // Banners of "data"."dataList"; none when it is not there.
  std::vector<ResourceModel> getResources() const;
};

}  // namespace qmv
