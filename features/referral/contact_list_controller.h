#pragma once
// The paged list both contacts screens share, paged like every list of the client
// (applyPage): the counter starts at 1, an empty page ends the list, a failed page is
// asked for again by the next loadMore. A new request stops the one still running, whose
// answer is then ignored.
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/session/base_view_controller.h"
#include "core/session/user_info_model.h"
#include "features/referral/referral_texts.h"

namespace qmv {

class MyContactsNetApi;

class ContactListController : public BaseViewController {
 public:
  ~ContactListController() override;
  ContactListController(const ContactListController&) = delete;
  ContactListController& operator=(const ContactListController&) = delete;

  // What the list says once it came back without contacts.
  static constexpr const char* kEmptyText = referral_texts::kNoContacts;

  long pageNum = 1;
  std::vector<UserInfoModel> contactList;
  bool loadMoreFooterHidden = true;

  // Page 1 again (pull to refresh, and the first appearance).
  void refresh();
  // The page after pageNum; nothing while a page is still on its way.
  void loadMore();
  bool isLoading() const;
  bool hasData() const override { return !contactList.empty(); }

  // After every answer was applied (or failed).
  std::function<void(bool correct)> onLoaded;

 protected:
  // `phone` empty: the member's own contacts; else that contact's invitees.
  explicit ContactListController(std::string phone) : phone_(std::move(phone)) {}
  // Stops a running request and asks for page pageNum.
  void sendPage();
  // A correct answer, before its rows are applied.
  virtual void answered(const MyContactsNetApi& /*request*/) {}

 private:
  void finished(MyContactsNetApi& request, bool correct);

  std::string phone_;
  std::shared_ptr<MyContactsNetApi> request_;
};

}  // namespace qmv
