#include "apps/qmv/discovery_rows.h"

#include "apps/qmv/cli_output.h"
#include "core/session/global_data.h"

namespace qmv::cli {

std::string storeRowText(const StoreInfoModel& store, std::optional<Coordinate> member) {
  return store.storeId + " " + store.storeName + " | " + store.title + " | " + store.distanceText(member) + " | " +
         store.priceText() + " " + store.shopPriceText() + " | " + store.soldText();
}

Json storeRowJson(const StoreInfoModel& store, std::optional<Coordinate> member) {
  Json row = {{"storeId", store.storeId},
              {"storeName", store.storeName},
              {"title", store.title},
              {"address", store.address},
              {"distance", store.distanceText(member)},
              {"price", store.priceText()},
              {"shopPrice", store.shopPriceText()},
              {"sold", store.soldText()}};
  if (store.longitude && store.latitude) row["coordinate"] = *store.longitude + "," + *store.latitude;
  return row;
}

void printStores(CliOutput& output, const std::string& title, const std::string& key,
                 const std::vector<StoreInfoModel>& stores) {
  const auto member = GlobalData::sharedInstance().userLocation();
  if (!title.empty()) output.line(title);
  Json rows = Json::array();
  for (const StoreInfoModel& store : stores) {
    output.line("  " + storeRowText(store, member));
    rows.push_back(storeRowJson(store, member));
  }
  output.data(key, std::move(rows));
}

}  // namespace qmv::cli
