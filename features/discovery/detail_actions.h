#pragma once
// Actions the store and offer screens share.
#include <string>

namespace qmv {

// Shows "该商家暂未提供电话" when `phone` is empty, else opens "tel:<phone>" through the
// Env's URL opener. Returns whether a number was handed over.
bool callPhone(const std::string& phone);

}  // namespace qmv
