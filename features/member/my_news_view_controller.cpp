#include "features/member/my_news_view_controller.h"

#include <algorithm>

#include "features/discovery/news_read_net_api.h"

namespace qmv {

MyNewsViewController::~MyNewsViewController() { detachRequest(readRequest_); }

void MyNewsViewController::viewWillAppear() {
  readSent_ = false;
  refresh();
}

bool MyNewsViewController::isUnread(const NewsInfoModel& news) { return news.isRead == member_centre_texts::kUnread; }

std::size_t MyNewsViewController::unreadCount() const {
  if (readTaken_) return 0;
  return static_cast<std::size_t>(std::count_if(rows().begin(), rows().end(), isUnread));
}

bool MyNewsViewController::isMarkingRead() const { return readRequest_ && readRequest_->isExecuting(); }

void MyNewsViewController::answered(const MyNewsNetApi& answered) {
  // Later pages add rows that the reading already covered; page 1 starts over.
  if (answered.page != "1") return;
  readTaken_ = false;
  if (!readSent_) markRead();
}

void MyNewsViewController::markRead() {
  readSent_ = true;
  detachRequest(readRequest_);
  auto request = std::make_shared<NewsReadNetApi>();
  // The member asked for his messages, not for this: a failure says nothing.
  request->needShowError = false;
  request->sessionDelegate = this;
  readRequest_ = request;
  request->startWithCompletionBlockWithSuccess(
      [this](NewsReadNetApi& api) {
        readTaken_ = api.isCorrectResult();
        if (onChange) onChange();
        if (onMarkedRead) onMarkedRead(readTaken_);
      },
      [this](BaseRequest&) {
        if (onMarkedRead) onMarkedRead(false);
      });
}

}  // namespace qmv
