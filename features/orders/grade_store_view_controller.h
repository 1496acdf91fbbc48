#pragma once
// The rating screen of an order's store, headless: the store's name, one to five stars
// and an optional comment. No star is lit until the member taps one: a rating the member
// did not give must not reach the store as the best mark. Submitting checks, in order and
// each refusal an error overlay as the withdrawal and card forms do, that a star was
// chosen ("请选择评分") and that the comment is well-formed UTF-8 and at most
// kMaxContentChars characters, then sends the rating; only one rating runs at a time.
// A correct answer notes the order as rated for the older order list, shows kRateDone
// and pops the screen; an incorrect one leaves the screen as it is, the server's message
// shown by the request itself.
#include <cstddef>
#include <functional>
#include <memory>
#include <string>

#include "core/session/base_view_controller.h"

namespace qmv {

class GradeStoreNetApi;

class GradeStoreViewController : public BaseViewController {
 public:
  static constexpr int kMinStar = 1;
  static constexpr int kMaxStar = 5;
  static constexpr std::size_t kMaxContentChars = 200;

  // `successOrderID`: where a correct rating writes the order's id (the application's
  // own field, which the older order list reads); may be null.
  GradeStoreViewController(std::string orderId, std::string storeName, std::string* successOrderID = nullptr);
  // Stops a rating still running; its answer never arrives.
  ~GradeStoreViewController() override;
  GradeStoreViewController(const GradeStoreViewController&) = delete;
  GradeStoreViewController& operator=(const GradeStoreViewController&) = delete;

  std::string title() const;
  const std::string& orderId() const { return orderId_; }
  const std::string& storeName() const { return storeName_; }

  // 0 until a star is tapped.
  int star() const { return star_; }
  // A tap on star `n` (1-based); values outside 1..5 are brought into range.
  void selectStar(int n);

  // The comment field, edited by the front end.
  std::string contentText;
  // Characters typed so far against the limit, "n/200" (bytes that are not UTF-8 count one
  // each).
  std::string countText() const;

  // Submit: the checks, then the request. Returns whether it was sent; false while one
  // is still running.
  bool submitAction();
  bool isSubmitting() const;

  // After each rating answer: whether it was correct.
  std::function<void(bool correct)> onFinished;

 private:
  std::string orderId_;
  std::string storeName_;
  std::string* successOrderID_;
  int star_ = 0;
  std::shared_ptr<GradeStoreNetApi> request_;
};

}  // namespace qmv
