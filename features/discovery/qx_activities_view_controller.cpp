#include "features/discovery/qx_activities_view_controller.h"

#include "core/common/dictionary.h"
#include "core/session/global_data.h"
#include "features/discovery/activity_detail_net_api.h"
#include "features/discovery/activity_screens.h"
#include "features/discovery/bookmark_activity_net_api.h"
#include "features/discovery/bookmark_answer.h"
#include "features/discovery/detail_actions.h"
#include "features/discovery/discovery_texts.h"
#include "platform/env.h"

namespace qmv {
namespace {

// Elements of an unchecked list value; none when it is absent or not an array.
const Json& arrayOf(const std::optional<Json>& value) {
  static const Json kEmpty = Json::array();
  return value && value->is_array() ? *value : kEmpty;
}

}  // namespace

QXActivitiesViewController::QXActivitiesViewController(std::string activityId) : activityId_(std::move(activityId)) {}

QXActivitiesViewController::~QXActivitiesViewController() {
  detachRequest(request_);
  detachRequest(bookmarkRequest_);
}

void QXActivitiesViewController::loadDetail() {
  detachRequest(request_);
  auto request = std::make_shared<ActivityDetailNetApi>(activityId_);
  attachRequest(*request);
  request_ = request;
  request->startWithCompletionBlockWithSuccess(
      [this](ActivityDetailNetApi& api) {
        bool loaded = false;
        if (api.isCorrectResult()) {
          if (auto activity = api.getActivityDetail()) {
            activity_ = std::move(activity);
            refreshViewWithIsFirst(!loadedOnce_);
            loadedOnce_ = true;
            loaded = true;
          }
        }
        if (onLoaded) onLoaded(loaded);
      },
      [this](BaseRequest&) {
        if (onLoaded) onLoaded(false);
      });
}

void QXActivitiesViewController::refreshViewWithIsFirst(bool /*isFirst*/) {
  // Every text is derived on demand; a front end redraws all of them.
  if (onChange) onChange();
}

bool QXActivitiesViewController::showsDescImage() const { return activity_ && activity_->hasImage != "0"; }

std::string QXActivitiesViewController::priceText() const { return activity_ ? activity_->priceText() : ""; }

std::string QXActivitiesViewController::priceLabel() const { return activity_ ? activity_->priceLabel() : ""; }

std::string QXActivitiesViewController::originalPriceText() const {
  return activity_ ? activity_->originalPriceText() : "";
}

std::string QXActivitiesViewController::soldText() const { return activity_ ? activity_->soldText() : ""; }

std::vector<QXActivitiesViewController::Package> QXActivitiesViewController::packages() const {
  std::vector<Package> result;
  if (!activity_) return result;
  for (const Json& element : arrayOf(activity_->packageList)) {
    Package package{strForKey(element, "title"), {}};
    const Json content = element.is_object() ? element.value("contentList", Json()) : Json();
    if (content.is_array()) {
      for (const Json& item : content) {
        package.items.push_back({strForKey(item, "commodity"), strForKey(item, "amount"), strForKey(item, "price")});
      }
    }
    result.push_back(std::move(package));
  }
  return result;
}

std::vector<std::string> QXActivitiesViewController::noticeLines() const {
  std::vector<std::string> lines;
  if (!activity_) return lines;
  lines.push_back(std::string(discovery_texts::kValidity) + activity_->date);
  lines.push_back(std::string(discovery_texts::kUseTime) + activity_->time);
  lines.push_back(discovery_texts::kUseRules);
  for (const Json& rule : arrayOf(activity_->ruleList)) {
    lines.push_back(discovery_texts::kBullet + strForKey(rule, "rule"));
  }
  for (const Json& remark : arrayOf(activity_->remarkList)) {
    lines.push_back(discovery_texts::kBullet + strForKey(remark, "remark"));
  }
  return lines;
}

void QXActivitiesViewController::callStore() { callPhone(activity_ ? activity_->storePhone : std::string()); }

std::optional<ScreenId> QXActivitiesViewController::openSubmitOrder() {
  const auto& navigator = Env::current().navigator;
  if (!activity_) return std::nullopt;
  const auto from = navigator->topScreen();
  GlobalData::sharedInstance().setPopToAfterPayVC(from ? std::optional(from->id) : std::nullopt);
  return navigator->push(discovery_texts::kSubmitScreen, submitOrderPayload(*activity_, activity_->isFirst));
}

void QXActivitiesViewController::bookmark() {
  detachRequest(bookmarkRequest_);
  auto request = std::make_shared<BookmarkActivityNetApi>(activityId_);
  attachRequest(*request, /*showLoading=*/false);
  bookmarkRequest_ = request;
  request->startWithCompletionBlockWithSuccess(
      [this](BookmarkActivityNetApi& api) {
        const bool correct = api.isCorrectResult();
        if (correct && activity_) {
          const std::string favorite = favoriteInAnswer(api.responseString());
          if (!favorite.empty()) activity_->favorite = favorite;
        }
        if (onChange) onChange();
        if (onBookmarked) onBookmarked(correct);
      },
      [this](BaseRequest&) {
        if (onBookmarked) onBookmarked(false);
      });
}

const char* QXActivitiesViewController::bookmarkStateText() const {
  return activity_ && activity_->favorite == discovery_texts::kFavoriteOn ? discovery_texts::kBookmarked
                                                                          : discovery_texts::kNotBookmarked;
}

}  // namespace qmv
