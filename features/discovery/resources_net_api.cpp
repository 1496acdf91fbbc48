#include "features/discovery/resources_net_api.h"

namespace qmv {

std::vector<ResourceModel> ResourcesNetApi::getResources() const {
  std::vector<ResourceModel> banners;
  const Json& data = responseData();
  if (!data.is_object()) return banners;
  const auto list = data.find("dataList");
  if (list == data.end() || !list->is_array()) return banners;
  for (const Json& element : *list) banners.emplace_back(element);
  return banners;
}

}  // namespace qmv
