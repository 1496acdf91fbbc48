#include "features/orders/qx_my_activity_order_detail_view_controller.h"

#include "core/common/fen.h"
#include "features/discovery/discovery_texts.h"
#include "features/orders/amount_text.h"
#include "features/orders/order_texts.h"
#include "platform/env.h"
#include "platform/navigator.h"
#include "platform/text_measurer.h"

namespace qmv {

namespace texts = order_texts;

std::string QXMyActivityOrderDetailViewController::groupedCode(const std::string& code) {
  std::string grouped;
  grouped.reserve(code.size() + code.size() / 4 + 1);
  int characters = 0;
  for (std::size_t i = 0; i < code.size();) {
    // One character: a lead byte and the continuation bytes after it.
    std::size_t end = i + 1;
    while (end < code.size() && (static_cast<unsigned char>(code[end]) & 0xC0) == 0x80) ++end;
    grouped.append(code, i, end - i);
    if (++characters % 4 == 0) grouped += ' ';
    i = end;
  }
  return grouped;
}

void QXMyActivityOrderDetailViewController::refreshView() {
  OrderDetailViewController::refreshView();
  if (!orderInfo) return;
  const OrderInfoModel& order = *orderInfo;
  priceText = texts::kDetailPricePrefix + order.price + texts::kTimesSign + order.number + texts::kPiecesSuffix;
  codeText = texts::kCodePrefix + groupedCode(order.promotionCode);
  numberText = texts::kNumberPrefix + order.number;
  totalText = texts::kTotalPrefix + order.totalPrices;
  contentText = order.content;
  savingText.clear();
  // Only plain amounts and counts within what one checkout may take: the product stays
  // far inside 64 bits.
  const auto unit = plainYuanFen(order.price);
  const auto total = plainYuanFen(order.totalPrices);
  const auto units = plainYuanFen(order.number);  // a count: digits only, as a whole amount
  if (unit && total && units && order.number.find('.') == std::string::npos && *unit <= kMaxPayFen &&
      *units / 100 <= kMaxPayFen) {
    const std::int64_t listed = *unit * (*units / 100);
    if (*total < listed)
      savingText = formatAmount(texts::kFirstOrderSavingFormat, Fen(listed - *total).yuanForFormat());
  }
  const Env& env = Env::current();
  contentHeight = 0;
  if (!contentText.empty()) {
    contentHeight = env.textMeasurer->measure(contentText, kContentFontPointSize,
                                              env.textMeasurer->screenWidth() - kContentSideMargins);
  }
  qrCode.reset();
  if (!order.promotionCode.empty()) qrCode = env.qrGenerator->encode(order.promotionCode);
}

void QXMyActivityOrderDetailViewController::gotoProductDetail() {
  const auto& navigator = Env::current().navigator;
  if (!orderInfo || orderInfo->commodityId.empty()) return;
  navigator->push(discovery_texts::kActivityScreen,
                  {{"commodityId", orderInfo->commodityId}, {"name", orderInfo->name}, {"isFirst", "1"}});
}

}  // namespace qmv
