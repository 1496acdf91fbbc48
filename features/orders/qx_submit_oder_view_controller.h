#pragma once
// The submit screen ("提交订单"), headless: the buyer picks a quantity of an offer and sees
// the total; submitting refreshes the member (so that the balance is current) and pushes
// the pay-now screen, or presents the login screen when there is no session.
//
// The total is computed in single precision, as the screen always has: "0" quantity ×
// nowPrice; "1" the first unit at firstPrice and the rest at nowPrice; any other flag
// firstPrice alone, whatever the quantity. A total that is not a finite amount one
// checkout may take (a price beyond range, an endless quantity) is never submitted.
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "core/session/base_view_controller.h"
#include "features/discovery/activity_model.h"
#include "platform/navigator.h"

namespace qmv {

class UserInfoNetApi;

class QXSubmitOderViewController : public BaseViewController {
 public:
  QXSubmitOderViewController(ActivityModel activityInfo, std::string isFirst);
  // From the payload the offer screen pushes the screen with (submitOrderPayload).
  explicit QXSubmitOderViewController(const Json& payload);
  ~QXSubmitOderViewController() override;
  QXSubmitOderViewController(const QXSubmitOderViewController&) = delete;
  QXSubmitOderViewController& operator=(const QXSubmitOderViewController&) = delete;

  const ActivityModel& activityInfo() const { return activityInfo_; }
  const std::string& isFirst() const { return isFirst_; }
  // The quantity label ("%ld"), "1" at first.
  const std::string& quantityText() const { return quantity_; }
  // "%@元" with nowPrice, the price every unit after a first one costs; shown after its
  // label "现价".
  std::string unitPriceText() const;
  // "%@元" with firstPrice when the first unit is bought at it (isFirst not "0"), shown
  // after "首单价"; empty otherwise. The total is made of these two.
  std::string firstPriceText() const;
  // How the total is made, so that it can be checked against the prices beside it:
  // "首单价 A元 x 1 + 现价 B元 x n" (each part only when it counts a unit), or
  // "现价 B元 x n" for a member who bought before.
  std::string totalBreakdownText() const;
  // The total in yuan by the rule above (infinite when a price is beyond single
  // precision), and its "%.2f" text (what the pay-now screen is given as totalFee), or
  // "金额有误" when the total is not payable.
  float totalFee() const;
  std::string totalText() const;
  // Whether the total is a finite amount of at least one fen and at most kMaxPayFen.
  bool totalPayable() const;

  // One more, without bound.
  void plusAction();
  // One fewer, never below 1.
  void reduceAction();
  // Refreshes the member, then opens the pay-now screen or the login screen. A submit
  // while the refresh runs replaces it. onSubmitted tells which screen was opened. A
  // total that is not payable shows "订单金额有误,无法提交" and calls onRefused instead.
  void submitAction();
  // The pay-now screen's payload for the current quantity and total.
  Json payNowPayload() const;

  // After submitAction: the pushed pay-now screen, or nullopt when the login screen was
  // presented instead.
  std::function<void(std::optional<ScreenId> payNow)> onSubmitted;
  std::function<void()> onRefused;

 private:
  void openPayNow();

  ActivityModel activityInfo_;
  std::string isFirst_;
  std::string quantity_ = "1";
  std::shared_ptr<UserInfoNetApi> userInfoNet_;
};

}  // namespace qmv
