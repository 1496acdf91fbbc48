#include "core/common/completion_signature.h"

#include <openssl/evp.h>
#include <openssl/hmac.h>

namespace qmv {

std::string sandboxCompletionSignature(const std::string& key, const std::string& prepayId, const std::string& result) {
  const std::string message = "prepay_id=" + prepayId + "&result=" + result;
  unsigned char digest[EVP_MAX_MD_SIZE];
  unsigned int length = 0;
  if (HMAC(EVP_sha256(), key.data(), static_cast<int>(key.size()),
           reinterpret_cast<const unsigned char*>(message.data()), message.size(), digest, &length) == nullptr) {
    return "";
  }
  static const char* const kHex = "0123456789abcdef";
  std::string out;
  for (unsigned int i = 0; i < length; ++i) {
    out += kHex[digest[i] >> 4];
    out += kHex[digest[i] & 0xF];
  }
  return out;
}

}  // namespace qmv
