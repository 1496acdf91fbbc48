#include "apps/gtk/store_rows.h"

#include "core/session/global_data.h"
#include "features/discovery/main_view_controller.h"

namespace qmv::gtk {

std::vector<std::string> pictureUrls(const std::string& joined) {
  std::vector<std::string> urls;
  std::size_t start = 0;
  while (start <= joined.size()) {
    std::size_t end = joined.find('|', start);
    if (end == std::string::npos) end = joined.size();
    const std::size_t first = joined.find_first_not_of(" \t", start);
    if (first != std::string::npos && first < end) {
      const std::size_t last = joined.find_last_not_of(" \t", end - 1);
      urls.push_back(joined.substr(first, last + 1 - first));
    }
    start = end + 1;
  }
  return urls;
}

std::vector<std::string> offerPictures(const ActivityModel& offer) {
  std::vector<std::string> urls = pictureUrls(offer.imageURL);
  for (std::string& desc : pictureUrls(offer.descImage)) urls.push_back(std::move(desc));
  return urls;
}

std::string firstPicture(const ActivityModel& offer) {
  std::vector<std::string> urls = pictureUrls(offer.imageURL);
  return urls.empty() ? std::string() : urls.front();
}

RowTexts storeRowTexts(const StoreInfoModel& store) {
  std::string subtitle = store.title;
  subtitle += (subtitle.empty() ? "" : "\n") + store.distanceText(GlobalData::sharedInstance().userLocation()) + "  " +
              store.soldText();
  std::string picture;
  for (const std::string& url : store.imgURLList) {
    if (url.find_first_not_of(" \t") == std::string::npos) continue;
    picture = url;
    break;
  }
  return {store.storeName, subtitle, store.priceText(), true, picture};
}

std::vector<BoxedRow> storeBoxedRows(const std::vector<StoreInfoModel>& stores) {
  std::vector<BoxedRow> rows;
  for (const StoreInfoModel& store : stores) {
    if (MainViewController::isPlaceholderRow(store)) continue;
    rows.push_back({storeRowTexts(store), "page.open-store", store.storeId});
  }
  return rows;
}

}  // namespace qmv::gtk
