#include "features/discovery/resources_net_api.h"

namespace qmv {

std::vector<ResourceModel> ResourcesNetApi::getResources() const {
  std::vector<ResourceModel> banners;
  for (const Json& element : responseList()) banners.emplace_back(element);
  return banners;
}

}  // namespace qmv
