#pragma once
// The detail of an activity order, headless: the order's texts, its redemption code in
// groups of four with the code's QR modules, and the package text with the height it
// takes on the screen.
#include <optional>
#include <string>

#include "features/orders/order_detail_view_controller.h"
#include "platform/qr_generator.h"

namespace qmv {

class QXMyActivityOrderDetailViewController : public OrderDetailViewController {
 public:
  static constexpr double kContentFontPointSize = 14.0;
  static constexpr double kContentSideMargins = 30.0;

  explicit QXMyActivityOrderDetailViewController(std::string orderId) : OrderDetailViewController(std::move(orderId)) {}

  // `code` with one blank after every fourth character (a trailing one too when the
  // length is a multiple of four). Characters are UTF-8 sequences, never split.
  static std::string groupedCode(const std::string& code);

  // Also measures the package text with the Env's text measurer (0 without one) and
  // encodes the redemption code with the Env's QR generator when there is a code.
  void refreshView() override;
  // The offer screen of the order's activity, as a first purchase; nothing without a
  // commodityId.
  void gotoProductDetail();

  std::string priceText;   // "￥%@ x %@件" with price and number, shown after "单价"
  // "首单优惠 -¥%.2f" with price × number − totalPrices when that is above 0 (the first
  // unit was sold at its first-purchase price), so that the unit price and the total
  // agree on the screen; empty otherwise, and when either is not a plain amount.
  std::string savingText;
  std::string codeText;    // "验证码:" + groupedCode(promotionCode)
  std::string numberText;  // "数量:%@"
  std::string totalText;   // "总价:%@" with totalPrices
  std::string contentText;
  double contentHeight = 0;        // of contentText wrapped to the screen width
  std::optional<QrMatrix> qrCode;  // of promotionCode, drawn in black
};

}  // namespace qmv
