#pragma once
// The my-orders screen, headless: four status tabs over one paged list of orders, each row
// a QXMyOrderTableViewCell, the refund of a row, and the opening of an order's detail.
//
// Paging: page 1 replaces the list and later pages append; an empty later page hides the
// load-more footer and keeps the rows. An incorrect page 1 clears the list, an incorrect
// or failed later page steps pageNum back so that the next pull-up asks for it again. The
// screen runs at most one list and one refund request; a new one stops the previous one
// of its kind, whose answer is then dropped (so a tab switch cancels the running load).
#include <array>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/session/base_view_controller.h"
#include "features/orders/order_info_model.h"
#include "features/orders/order_texts.h"
#include "features/orders/qx_my_order_table_view_cell.h"

namespace qmv {

class MyOrderNetApi;
class RefundNetApi;

class QXMyOrderViewController : public BaseViewController {
 public:
  static constexpr long kTabCount = 4;  // 0 all, 1 to use, 2 to rate, 3 done
  // findOrder pulls up no further than this page, whatever the server keeps sending.
  static constexpr long kFindPageLimit = 200;
  // What the list says once a tab came back without orders (noDataShown).
  static constexpr const char* kEmptyText = order_texts::kNoOrders;

  struct TabButton {
    std::string image;
    std::string selectedImage;
    bool selected = false;
  };

  // `type`: the tab to open on (0..3; anything else opens the all tab).
  explicit QXMyOrderViewController(long type = 0);
  ~QXMyOrderViewController() override;
  QXMyOrderViewController(const QXMyOrderViewController&) = delete;
  QXMyOrderViewController& operator=(const QXMyOrderViewController&) = delete;

  std::string title() const;
  // Empties the list, selects the tab `type` and returns to page 1. Sends nothing.
  void viewDidLoad();
  // Every appearance reloads page 1 of the current tab (e.g. back from rating).
  void viewWillAppear();

  // Tab buttons: select that tab alone and load its page 1.
  void allBtnClick() { selectTab(0); }
  void waitUseBtnClick() { selectTab(1); }
  void waitCommentBtnClick() { selectTab(2); }
  void doneBtnClick() { selectTab(3); }
  // Pull-down: page 1 again. Pull-up: the next page.
  void headerRefresh();
  void footerRefresh();

  // Stops a list request still running and asks for page pageNum of tab index.
  void myOrderNet();
  // Stops a refund still running and asks for the refund of `orderId` (nothing for an
  // empty id); a correct answer reloads page 1.
  void refundNet(const std::string& orderId);

  std::size_t numberOfRows() const { return orderList.size(); }
  // The row `row` as the table draws it, its button wired to refundNet. REQUIRES: row <
  // numberOfRows().
  QXMyOrderTableViewCell cellForRow(std::size_t row);
  // Opens the detail screen of the row's order (store or activity by orderType).
  void didSelectRow(std::size_t row);

  // Pulls up page after page until the order `orderId` is listed, the footer hides, a
  // page fails or kFindPageLimit is reached, then calls `found` with its row (nullopt when
  // it is not listed). Waits for a load that is still running first.
  void findOrder(const std::string& orderId, std::function<void(std::optional<std::size_t>)> found);

  bool isLoading() const;
  bool isRefunding() const;
  bool hasData() const override { return !orderList.empty(); }

  long type;
  long index = 0;
  long pageNum = 1;
  std::vector<OrderInfoModel> orderList;
  std::array<TabButton, kTabCount> tabButtons;
  bool footerHidden = false;
  bool noDataShown = false;
  bool headerRefreshing = false;
  bool footerRefreshing = false;

  // After every list answer was applied (or failed): whether it was correct.
  std::function<void(bool correct)> onLoaded;
  // After every refund answer: whether the refund was accepted.
  std::function<void(bool correct)> onRefunded;

 private:
  enum class Outcome { Correct, Incorrect, Failed };

  void selectTab(long tab);
  void finished(MyOrderNetApi& request, Outcome outcome);
  void continueFind(bool correct);

  std::shared_ptr<MyOrderNetApi> request_;
  std::shared_ptr<RefundNetApi> refundRequest_;
  // Alive while the screen is: rows' alerts may be answered after the screen has gone.
  std::shared_ptr<QXMyOrderViewController*> self_;
  std::string findId_;
  std::function<void(std::optional<std::size_t>)> found_;
};

}  // namespace qmv
