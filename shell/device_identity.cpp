#include "shell/device_identity.h"

#include <cctype>
#include <cstdio>
#include <random>

#include "core/common/settings_keys.h"
#include "platform/env.h"
#include "platform/settings_store.h"

namespace qmv {
namespace {

// A version-4 UUID, upper case as the platform writes device identities.
std::string randomUuid() {
  std::random_device source;
  unsigned char bytes[16];
  for (unsigned char& b : bytes) b = static_cast<unsigned char>(source() & 0xFF);
  bytes[6] = static_cast<unsigned char>((bytes[6] & 0x0F) | 0x40);
  bytes[8] = static_cast<unsigned char>((bytes[8] & 0x3F) | 0x80);
  std::string out;
  char hex[3];
  for (int i = 0; i < 16; ++i) {
    if (i == 4 || i == 6 || i == 8 || i == 10) out += '-';
    std::snprintf(hex, sizeof hex, "%02X", bytes[i]);
    out += hex;
  }
  return out;
}

}  // namespace

bool isUuid(const std::string& text) {
  if (text.size() != 36) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool dash = i == 8 || i == 13 || i == 18 || i == 23;
    if (dash ? text[i] != '-' : !std::isxdigit(static_cast<unsigned char>(text[i]))) return false;
  }
  return true;
}

std::string deviceIdentity() {
  const auto& settings = Env::current().settings;
  if (auto stored = settings->stringForKey(kDeviceIdKey); stored && isUuid(*stored)) return *stored;
  std::string made = randomUuid();
  settings->setString(made, kDeviceIdKey);
  settings->synchronize();
  return made;
}

}  // namespace qmv
