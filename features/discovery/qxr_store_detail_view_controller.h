#pragma once
// The store screen, headless: loads one store with its offers and latest ratings, and
// gives the texts the screen shows and the actions it offers (call, map, bookmark,
// offers, comments). Texts are the screen's own, byte for byte.
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/session/base_view_controller.h"
#include "core/session/self_info_change.h"
#include "features/discovery/grade_model.h"
#include "features/discovery/store_info_model.h"

namespace qmv {

class StoreDetailNetApi;
class BookmarkStoreNetApi;

class QXRStoreDetailViewController : public BaseViewController {
 public:
  QXRStoreDetailViewController(std::string storeId, std::string storeName);
  ~QXRStoreDetailViewController() override;
  QXRStoreDetailViewController(const QXRStoreDetailViewController&) = delete;
  QXRStoreDetailViewController& operator=(const QXRStoreDetailViewController&) = delete;

  // Asks for the store; onLoaded tells whether a store arrived.
  void loadDetail();

  const std::optional<StoreInfoModel>& store() const { return store_; }
  const std::vector<GradeModel>& gradeList() const { return gradeList_; }
  const std::string& storeId() const { return storeId_; }
  // The name given at opening until the store has arrived.
  std::string storeName() const;

  // "%ld张": how many pictures the carousel has.
  std::string pictureCountText() const;
  // "营业时间: %@".
  std::string openingHoursText() const;
  // "人均¥%@".
  std::string perPersonText() const;
  // "%@条评论" with the store's rating count.
  std::string commentCountText() const;

  // "该商家暂未提供电话" without a phone number, else dials "tel:%@".
  void callStore();
  // The single-store map, or "位置信息错误" without a coordinate.
  void showAddress();
  // Opens the offer screen of the store's offer `index`.
  void selectActivity(std::size_t index);
  // "查看更多评论": the full comment list.
  void showMoreComments();
  // Toggles the bookmark; `favorite` follows the answer.
  void bookmark();
  // "已收藏" when the loaded store is bookmarked ("favorite" "1"), else "未收藏".
  const char* bookmarkStateText() const;

  bool hasData() const override { return store_.has_value(); }
  std::function<void(bool loaded)> onLoaded;
  std::function<void(bool correct)> onBookmarked;

 private:
  std::string storeId_;
  std::string storeName_;
  std::optional<StoreInfoModel> store_;
  std::vector<GradeModel> gradeList_;
  std::shared_ptr<StoreDetailNetApi> request_;
  std::shared_ptr<BookmarkStoreNetApi> bookmarkRequest_;
  // A sign-in or sign-out changes prices and bookmarks: a loaded or loading screen loads
  // again.
  SelfInfoChangeObserver selfInfoChanged_{[this] {
    if (request_) loadDetail();
  }};
};

}  // namespace qmv
