#include "features/orders/qx_my_order_view_controller.h"

#include <algorithm>
#include <iterator>

#include "features/orders/my_order_net_api.h"
#include "features/orders/order_screens.h"
#include "features/orders/order_texts.h"
#include "features/orders/refund_net_api.h"

namespace qmv {

QXMyOrderViewController::QXMyOrderViewController(long type)
    : type(type >= 0 && type < kTabCount ? type : 0), self_(std::make_shared<QXMyOrderViewController*>(this)) {
  for (long tab = 0; tab < kTabCount; ++tab) {
    tabButtons[tab] = {order_texts::kTabImages[tab], order_texts::kTabSelectedImages[tab], false};
  }
}

QXMyOrderViewController::~QXMyOrderViewController() {
  detachRequest(request_);
  detachRequest(refundRequest_);
}

std::string QXMyOrderViewController::title() const { return order_texts::kMyOrdersTitle; }

void QXMyOrderViewController::viewDidLoad() {
  orderList.clear();
  index = type;
  for (long tab = 0; tab < kTabCount; ++tab) tabButtons[tab].selected = tab == index;
  pageNum = 1;
}

void QXMyOrderViewController::viewWillAppear() {
  pageNum = 1;
  footerHidden = false;
  myOrderNet();
}

void QXMyOrderViewController::selectTab(long tab) {
  index = tab;
  pageNum = 1;
  footerHidden = false;
  for (long other = 0; other < kTabCount; ++other) tabButtons[other].selected = other == tab;
  myOrderNet();
}

void QXMyOrderViewController::headerRefresh() {
  headerRefreshing = true;
  pageNum = 1;
  myOrderNet();
}

void QXMyOrderViewController::footerRefresh() {
  if (isLoading()) return;  // a second pull-up would skip the page on its way
  footerRefreshing = true;
  ++pageNum;
  myOrderNet();
}

void QXMyOrderViewController::myOrderNet() {
  detachRequest(request_);
  auto request = std::make_shared<MyOrderNetApi>(std::to_string(pageNum), index);
  attachRequest(*request);
  request_ = request;
  request->startWithCompletionBlockWithSuccess(
      [this](MyOrderNetApi& api) {
        finished(api, api.isCorrectResult() ? Outcome::Correct : Outcome::Incorrect);
      },
      [this](MyOrderNetApi& api) { finished(api, Outcome::Failed); });
}

void QXMyOrderViewController::finished(MyOrderNetApi& request, Outcome outcome) {
  if (&request != request_.get()) return;
  const bool correct = outcome == Outcome::Correct;
  if (correct) {
    std::vector<OrderInfoModel> page = request.getOrderList();
    footerHidden = page.empty();
    if (pageNum == 1) {
      orderList = std::move(page);
    } else {
      orderList.insert(orderList.end(), std::make_move_iterator(page.begin()), std::make_move_iterator(page.end()));
    }
  } else if (pageNum >= 2) {
    --pageNum;
  } else if (outcome == Outcome::Incorrect) {
    // A refused page 1 empties the list; a failed connection keeps what is shown.
    orderList.clear();
  }
  noDataShown = orderList.empty();
  headerRefreshing = false;
  footerRefreshing = false;
  if (onChange) onChange();
  if (onLoaded) onLoaded(correct);
  continueFind(correct);
}

void QXMyOrderViewController::refundNet(const std::string& orderId) {
  if (orderId.empty()) return;
  detachRequest(refundRequest_);
  auto request = std::make_shared<RefundNetApi>(orderId);
  attachRequest(*request);
  refundRequest_ = request;
  auto done = [this](RefundNetApi& api, bool transportOk) {
    const bool correct = transportOk && api.isCorrectResult();
    if (correct) {
      pageNum = 1;
      footerHidden = false;
      myOrderNet();
    }
    if (onRefunded) onRefunded(correct);
  };
  request->startWithCompletionBlockWithSuccess([done](RefundNetApi& r) { done(r, true); },
                                               [done](RefundNetApi& r) { done(r, false); });
}

QXMyOrderTableViewCell QXMyOrderViewController::cellForRow(std::size_t row) {
  QXMyOrderTableViewCell cell;
  cell.setData(orderList.at(row));
  cell.refund = [weak = std::weak_ptr<QXMyOrderViewController*>(self_)](const std::string& orderId) {
    if (const auto screen = weak.lock()) (*screen)->refundNet(orderId);
  };
  return cell;
}

void QXMyOrderViewController::didSelectRow(std::size_t row) {
  if (row < orderList.size()) openOrderDetail(orderList[row]);
}

void QXMyOrderViewController::findOrder(const std::string& orderId,
                                        std::function<void(std::optional<std::size_t>)> found) {
  findId_ = orderId;
  found_ = std::move(found);
  if (isLoading()) return;  // continued when the running load has been applied
  continueFind(true);
}

void QXMyOrderViewController::continueFind(bool correct) {
  if (!found_) return;
  const auto at = std::find_if(orderList.begin(), orderList.end(),
                               [this](const OrderInfoModel& order) { return order.orderId == findId_; });
  std::optional<std::size_t> row;
  if (!findId_.empty() && at != orderList.end()) {
    row = static_cast<std::size_t>(at - orderList.begin());
  } else if (correct && !footerHidden && !findId_.empty() && pageNum < kFindPageLimit) {
    footerRefresh();
    return;
  }
  auto found = std::move(found_);
  found_ = nullptr;
  found(row);
}

bool QXMyOrderViewController::isLoading() const { return request_ && request_->isExecuting(); }

bool QXMyOrderViewController::isRefunding() const { return refundRequest_ && refundRequest_->isExecuting(); }

}  // namespace qmv
