#pragma once
// The offer screen, headless: loads one offer and gives the texts its sections show
// (price line, "套餐", "购买须知") and the call action. Texts are byte for byte.
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/session/base_view_controller.h"
#include "core/session/self_info_change.h"
#include "features/discovery/activity_model.h"
#include "platform/navigator.h"

namespace qmv {

class ActivityDetailNetApi;
class BookmarkActivityNetApi;

class QXActivitiesViewController : public BaseViewController {
 public:
  // One package of the "套餐" section: its title and its items.
  struct PackageItem {
    std::string commodity;
    std::string amount;
    std::string price;
  };
  struct Package {
    std::string title;
    std::vector<PackageItem> items;
  };

  explicit QXActivitiesViewController(std::string activityId);
  ~QXActivitiesViewController() override;
  QXActivitiesViewController(const QXActivitiesViewController&) = delete;
  QXActivitiesViewController& operator=(const QXActivitiesViewController&) = delete;

  // Asks for the offer; refreshViewWithIsFirst runs when it arrives.
  void loadDetail();
  // Rebuilds the shown texts from the offer (isFirst: the first load).
  void refreshViewWithIsFirst(bool isFirst);

  const std::optional<ActivityModel>& activity() const { return activity_; }
  // Whether the description picture is shown (hasImage not "0").
  bool showsDescImage() const;
  // "¥%@" of firstPrice for a first purchase (isFirst not "0"), else of nowPrice.
  std::string priceText() const;
  // "首单价" or "现价": which of the two priceText is, shown beside it.
  std::string priceLabel() const;
  std::string originalPriceText() const;  // "原价:¥%@"
  std::string soldText() const;           // "已售%@份"
  // packageList: each element's "title" and its "contentList" items.
  std::vector<Package> packages() const;
  // The "购买须知" lines: "有效期:" date, "使用时间:" time, "使用规则:", then "●%@" per
  // ruleList "rule" and per remarkList "remark".
  std::vector<std::string> noticeLines() const;

  // "该商家暂未提供电话" without the store's phone number, else dials "tel:%@".
  void callStore();

  // Goes on to buy the loaded offer: pushes the submit screen with the offer and its
  // first-purchase flag, and makes the screen shown until now the one a payment returns
  // to. nullopt (nothing opens) before the offer has loaded.
  std::optional<ScreenId> openSubmitOrder();

  // Toggles the offer's bookmark ("postCollectCommodity"); `favorite` follows the answer.
  void bookmark();
  // "已收藏" when the loaded offer is bookmarked ("favorite" "1"), else "未收藏".
  const char* bookmarkStateText() const;

  bool hasData() const override { return activity_.has_value(); }
  std::function<void(bool loaded)> onLoaded;
  std::function<void(bool correct)> onBookmarked;

 private:
  std::string activityId_;
  std::optional<ActivityModel> activity_;
  std::shared_ptr<ActivityDetailNetApi> request_;
  std::shared_ptr<BookmarkActivityNetApi> bookmarkRequest_;
  bool loadedOnce_ = false;
  // A sign-in or sign-out changes prices and bookmarks: a loaded or loading screen loads
  // again.
  SelfInfoChangeObserver selfInfoChanged_{[this] {
    if (request_) loadDetail();
  }};
};

}  // namespace qmv
