#include "features/discovery/qxr_store_detail_view_controller.h"

#include <cstdio>

#include "core/common/dictionary.h"
#include "features/discovery/bookmark_answer.h"
#include "features/discovery/bookmark_store_net_api.h"
#include "features/discovery/detail_actions.h"
#include "features/discovery/discovery_texts.h"
#include "features/discovery/store_detail_net_api.h"
#include "features/discovery/store_screens.h"
#include "platform/env.h"
#include "platform/navigator.h"

namespace qmv {

QXRStoreDetailViewController::QXRStoreDetailViewController(std::string storeId, std::string storeName)
    : storeId_(std::move(storeId)), storeName_(std::move(storeName)) {}

QXRStoreDetailViewController::~QXRStoreDetailViewController() {
  detachRequest(request_);
  detachRequest(bookmarkRequest_);
}

void QXRStoreDetailViewController::loadDetail() {
  detachRequest(request_);
  auto request = std::make_shared<StoreDetailNetApi>(storeId_);
  attachRequest(*request);
  request_ = request;
  request->startWithCompletionBlockWithSuccess(
      [this](StoreDetailNetApi& api) {
        bool loaded = false;
        if (api.isCorrectResult()) {
          if (auto store = api.getStoreDetail()) {
            store_ = std::move(store);
            gradeList_ = api.getGradeList();
            loaded = true;
          }
        }
        if (onChange) onChange();
        if (onLoaded) onLoaded(loaded);
      },
      [this](BaseRequest&) {
        if (onLoaded) onLoaded(false);
      });
}

std::string QXRStoreDetailViewController::storeName() const {
  return store_ && !store_->storeName.empty() ? store_->storeName : storeName_;
}

std::string QXRStoreDetailViewController::pictureCountText() const {
  char text[32];
  std::snprintf(text, sizeof text, discovery_texts::kPictureCountFormat,
                static_cast<long>(store_ ? store_->imgURLList.size() : 0));
  return text;
}

std::string QXRStoreDetailViewController::openingHoursText() const {
  return discovery_texts::kOpeningHoursPrefix + (store_ ? store_->time : std::string());
}

std::string QXRStoreDetailViewController::perPersonText() const {
  return discovery_texts::kPerPersonPrefix + (store_ ? store_->price : std::string());
}

std::string QXRStoreDetailViewController::commentCountText() const {
  return (store_ ? store_->starNum : std::string()) + discovery_texts::kCommentCountSuffix;
}

void QXRStoreDetailViewController::callStore() { callPhone(store_ ? store_->phone : std::string()); }

void QXRStoreDetailViewController::showAddress() {
  StoreInfoModel shown = store_.value_or(StoreInfoModel());
  if (!store_) shown.storeId = storeId_;
  openStoreMap(shown);
}

void QXRStoreDetailViewController::selectActivity(std::size_t index) {
  if (!store_ || index >= store_->activityList.size()) return;
  const ActivityModel& activity = store_->activityList[index];
  Env::current().navigator->push(discovery_texts::kActivityScreen,
                                 {{"commodityId", activity.commodityID}, {"name", activity.name}});
}

void QXRStoreDetailViewController::showMoreComments() {
  Env::current().navigator->push(discovery_texts::kCommentsScreen, {{"storeId", storeId_}});
}

void QXRStoreDetailViewController::bookmark() {
  detachRequest(bookmarkRequest_);
  auto request = std::make_shared<BookmarkStoreNetApi>(storeId_);
  attachRequest(*request, /*showLoading=*/false);
  bookmarkRequest_ = request;
  request->startWithCompletionBlockWithSuccess(
      [this](BookmarkStoreNetApi& api) {
        const bool correct = api.isCorrectResult();
        if (correct && store_) {
          const std::string favorite = favoriteInAnswer(api.responseString());
          if (!favorite.empty()) store_->favorite = favorite;
        }
        if (onChange) onChange();
        if (onBookmarked) onBookmarked(correct);
      },
      [this](BaseRequest&) {
        if (onBookmarked) onBookmarked(false);
      });
}

const char* QXRStoreDetailViewController::bookmarkStateText() const {
  return store_ && store_->favorite == discovery_texts::kFavoriteOn ? discovery_texts::kBookmarked
                                                                    : discovery_texts::kNotBookmarked;
}

}  // namespace qmv
