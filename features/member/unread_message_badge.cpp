#include "features/member/unread_message_badge.h"

#include <algorithm>

#include "core/session/base_view_controller.h"
#include "core/session/global_data.h"
#include "features/discovery/my_news_net_api.h"
#include "features/member/my_news_view_controller.h"

namespace qmv {

UnreadMessageBadge::~UnreadMessageBadge() { detachRequest(request_); }

std::string UnreadMessageBadge::badgeText() const { return unread_ == 0 ? std::string() : std::to_string(unread_); }

bool UnreadMessageBadge::isLoading() const { return request_ && request_->isExecuting(); }

void UnreadMessageBadge::viewWillAppear() {
  detachRequest(request_);
  request_.reset();
  if (!GlobalData::sharedInstance().selfInfo()) {
    unread_ = 0;
    if (onChange) onChange();
    return;
  }
  request_ = std::make_shared<MyNewsNetApi>("1");
  request_->needShowError = false;
  request_->startWithCompletionBlockWithSuccess(
      [this](MyNewsNetApi& api) {
        if (!api.isCorrectResult()) return;
        const auto news = api.getNews();
        unread_ = static_cast<std::size_t>(std::count_if(news.begin(), news.end(), MyNewsViewController::isUnread));
        if (onChange) onChange();
      },
      [](MyNewsNetApi&) {});
}

}  // namespace qmv
