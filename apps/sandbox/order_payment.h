#pragma once
// Completion of a waiting order by its prepay id, as a payment application's return does.
#include "apps/sandbox/sandbox_call.h"

namespace qmv::sandbox {

// Arguments "prepay_id" and "result" ("success", "fail" or "cancel"). On success the balance
// part is deducted (refused with "余额不足" when it is no longer there) and the order becomes
// payable to the member; fail and cancel close the order. A finished order is refused.
Reply completePayment(Call& call);

}  // namespace qmv::sandbox
