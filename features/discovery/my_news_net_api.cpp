#include "features/discovery/my_news_net_api.h"

#include <utility>

#include "core/common/dictionary.h"

namespace qmv {

MyNewsNetApi::MyNewsNetApi(std::string page) : page(std::move(page)) {}

Json MyNewsNetApi::requestArgument() const {
  Json arguments = getBaseArgument();
  setCustomString(arguments, page, "page");
  return arguments;
}

std::vector<NewsInfoModel> MyNewsNetApi::getNews() const { return modelsWithArray<NewsInfoModel>(responseList()); }

}  // namespace qmv
