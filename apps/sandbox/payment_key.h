#pragma once
// The key the sandbox shares with its payment-application stand-ins: 64 hexadecimal digits
// in <home>/payment_apps.key, made on first use and readable by the owner only. A payment
// completes only with a signature under it (sandboxCompletionSignature), so a member who
// knows his own order's "prepay_id" still cannot report it paid.
#include <filesystem>
#include <string>

namespace qmv::sandbox {

inline constexpr const char* kPaymentKeyFile = "payment_apps.key";

// The home's key, made when missing or unreadable as a key; "" with `error` filled when it
// can be neither read nor written. Two processes starting on one home get the same key.
std::string loadPaymentKey(const std::filesystem::path& home, std::string* error);

// Whether `sign` is the completion signature of `prepayId` and `result` under `key`
// (compared in constant time). False for an empty key.
bool completionSigned(const std::string& key, const std::string& prepayId, const std::string& result,
                      const std::string& sign);

}  // namespace qmv::sandbox
