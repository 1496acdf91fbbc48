#pragma once
// The signature on a sandbox payment completion. The sandbox checks it and the stand-in
// payment applications make it, and neither may depend on the other, so it lives below
// both.
#include <string>

namespace qmv {

// The "sign" of a completion of `prepayId` with `result` ("success", "fail" or "cancel")
// under `key`: HMAC-SHA256 of "prepay_id=<id>&result=<result>", as 64 lower-case
// hexadecimal digits ("" if the digest cannot be made).
std::string sandboxCompletionSignature(const std::string& key, const std::string& prepayId, const std::string& result);

}  // namespace qmv
