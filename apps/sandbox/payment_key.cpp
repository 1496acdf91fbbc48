#include "apps/sandbox/payment_key.h"

#include <fcntl.h>
#include <openssl/crypto.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <string_view>

#include "apps/sandbox/sandbox_util.h"
#include "core/common/completion_signature.h"

namespace qmv::sandbox {
namespace {

constexpr size_t kKeyLength = 64;

std::string readKey(const std::filesystem::path& file) {
  // A key and its line end at most: anything longer is not a key, whatever follows.
  char buffer[kKeyLength + 3] = {};
  std::ifstream in(file, std::ios::binary);
  in.read(buffer, sizeof buffer);
  std::string_view text(buffer, static_cast<size_t>(in.gcount()));
  while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) text.remove_suffix(1);
  if (text.size() != kKeyLength || text.find_first_not_of("0123456789abcdef") != std::string_view::npos) return {};
  return std::string(text);
}

}  // namespace

std::string loadPaymentKey(const std::filesystem::path& home, std::string* error) {
  const auto file = home / kPaymentKeyFile;
  if (std::string key = readKey(file); !key.empty()) return key;
  // Written aside and then moved into place, so that a second process starting on the same
  // home never reads half a key; whichever move lands first is the home's key.
  const std::string key = randomHex(kKeyLength);
  char asideName[96];
  std::snprintf(asideName, sizeof asideName, "%s.%ld.new", kPaymentKeyFile, static_cast<long>(::getpid()));
  const auto aside = home / asideName;
  const int fd = ::open(aside.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC, 0600);
  const std::string line = key + "\n";
  const bool written =
      fd >= 0 && ::write(fd, line.data(), line.size()) == static_cast<ssize_t>(line.size()) && ::fsync(fd) == 0;
  if (fd >= 0) ::close(fd);
  std::error_code ec;
  // A key file that cannot be read as a key (truncated, edited) is replaced.
  if (written && ::link(aside.c_str(), file.c_str()) != 0 && readKey(file).empty()) {
    std::filesystem::rename(aside, file, ec);
  }
  std::filesystem::remove(aside, ec);
  if (std::string stored = readKey(file); !stored.empty()) return stored;
  if (error != nullptr) *error = "cannot write the payment key " + file.string();
  return "";
}

bool completionSigned(const std::string& key, const std::string& prepayId, const std::string& result,
                      const std::string& sign) {
  if (key.empty()) return false;
  const std::string expected = sandboxCompletionSignature(key, prepayId, result);
  return !expected.empty() && expected.size() == sign.size() &&
         CRYPTO_memcmp(expected.data(), sign.data(), sign.size()) == 0;
}

}  // namespace qmv::sandbox
