#include "features/referral/contact_list_controller.h"

#include <iterator>

#include "features/referral/my_contacts_net_api.h"

namespace qmv {

ContactListController::~ContactListController() { detachRequest(request_); }

void ContactListController::refresh() {
  pageNum = 1;
  sendPage();
}

void ContactListController::loadMore() {
  ++pageNum;
  sendPage();
}

bool ContactListController::isLoading() const { return request_ && request_->isExecuting(); }

void ContactListController::sendPage() {
  detachRequest(request_);
  auto request = std::make_shared<MyContactsNetApi>(std::to_string(pageNum), phone_);
  attachRequest(*request);
  request_ = request;
  request->startWithCompletionBlockWithSuccess(
      [this](BaseRequest& done) {
        auto& api = static_cast<MyContactsNetApi&>(done);
        finished(api, api.isCorrectResult());
      },
      [this](BaseRequest& done) { finished(static_cast<MyContactsNetApi&>(done), false); });
}

void ContactListController::finished(MyContactsNetApi& request, bool correct) {
  if (&request != request_.get()) return;
  if (correct) {
    answered(request);
    std::vector<UserInfoModel> contacts = request.getMyContacts();
    loadMoreFooterHidden = contacts.empty();
    if (pageNum <= 1) {
      contactList = std::move(contacts);
    } else {
      contactList.insert(contactList.end(), std::make_move_iterator(contacts.begin()),
                         std::make_move_iterator(contacts.end()));
    }
  } else if (pageNum >= 2) {
    --pageNum;
  }
  if (onChange) onChange();
  if (onLoaded) onLoaded(correct);
}

}  // namespace qmv
