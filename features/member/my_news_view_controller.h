#pragma once
// The messages screen ("我的消息"), headless: the member's messages, paged like every
// list of the client, the unread ones marked.
//
// Choices: messages are shown in the server's order, which is newest first; a page is
// never re-sorted on the device, since paging would then shuffle rows between pages. A
// message is unread only when its "isRead" is "0"; another value is not guessed at. The
// marks are shown as received: once page 1 has arrived the screen tells the server that
// the member has read his messages ("getMyReadMessage", once per appearance, silently),
// but the rows keep their marks until the next page 1, so that the member sees which
// messages were new. The badge count (unreadCount) drops to 0 once the server has taken
// the reading. A row opens nothing: the list shows each message whole.
#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

#include "core/session/paged_list_controller.h"
#include "features/discovery/my_news_net_api.h"
#include "features/discovery/news_info_model.h"
#include "features/member/member_centre_texts.h"

namespace qmv {

class NewsReadNetApi;

class MyNewsViewController : public PagedListController<NewsInfoModel, MyNewsNetApi> {
 public:
  static constexpr const char* kTitle = member_centre_texts::kMessagesTitle;
  static constexpr const char* kEmptyText = member_centre_texts::kNoMessages;
  static constexpr const char* kUnreadMark = member_centre_texts::kUnreadMark;

  MyNewsViewController() = default;
  ~MyNewsViewController() override;

  const char* title() const { return kTitle; }
  // The screen appears (again): page 1, after which the messages are marked read once more.
  void viewWillAppear();
  // Whether `news` is shown marked unread.
  static bool isUnread(const NewsInfoModel& news);
  // The member tab's badge: unread rows among those shown, 0 once the server took the reading.
  std::size_t unreadCount() const;
  // Whether the reading is on its way to the server.
  bool isMarkingRead() const;

  // After the reading was answered: whether the server took it.
  std::function<void(bool correct)> onMarkedRead;

 protected:
  std::shared_ptr<MyNewsNetApi> makeRequest(long page) override {
    return std::make_shared<MyNewsNetApi>(std::to_string(page));
  }
  std::vector<NewsInfoModel> rowsOf(const MyNewsNetApi& answered) override { return answered.getNews(); }
  void answered(const MyNewsNetApi& answered) override;

 private:
  void markRead();

  bool readSent_ = false;
  bool readTaken_ = false;
  std::shared_ptr<NewsReadNetApi> readRequest_;
};

}  // namespace qmv
