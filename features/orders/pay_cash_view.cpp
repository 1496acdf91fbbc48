#include "features/orders/pay_cash_view.h"

#include "features/orders/amount_text.h"
#include "features/orders/checkout_texts.h"

namespace qmv {

namespace texts = checkout_texts;

namespace {

std::string yuanText(const std::string& amount) {
  return formatAmount(texts::kReceiptValueFormat, doubleValueOf(amount));
}

}  // namespace

PayCashView::PayCashView(const OrderInfoModel& order)
    : rows_{{texts::kReceiptPrice, yuanText(order.price)},
            {texts::kReceiptBalance, yuanText(order.balancePaid)},
            {texts::kReceiptMoney, yuanText(order.money)}},
      orderNumber_(order.orderId) {}

const char* PayCashView::note() { return texts::kReceiptNote; }

}  // namespace qmv
