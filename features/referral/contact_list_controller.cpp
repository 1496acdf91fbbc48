#include "features/referral/contact_list_controller.h"

#include "core/common/paged_list.h"
#include "features/referral/my_contacts_net_api.h"

namespace qmv {

ContactListController::~ContactListController() { detachRequest(request_); }

void ContactListController::refresh() {
  pageNum = 1;
  sendPage();
}

void ContactListController::loadMore() {
  if (isLoading()) return;  // a second pull-up would skip the page on its way
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
      [this](MyContactsNetApi& api) {
        finished(api, api.isCorrectResult());
      },
      [this](MyContactsNetApi& api) { finished(api, false); });
}

void ContactListController::finished(MyContactsNetApi& request, bool correct) {
  if (&request != request_.get()) return;
  if (correct) answered(request);
  applyPage(contactList, pageNum, loadMoreFooterHidden, correct,
            correct ? request.getMyContacts() : std::vector<UserInfoModel>{});
  if (onChange) onChange();
  if (onLoaded) onLoaded(correct);
}

}  // namespace qmv
