#pragma once
// Internal to the account screens: small accessors over the installed Env that tolerate
// ports a platform does not offer (a missing port is skipped, never dereferenced).
#include <memory>
#include <string>

#include "core/request/base_net_api.h"
#include "core/session/base_view_controller.h"
#include "platform/env.h"
#include "platform/push_service.h"
#include "platform/settings_store.h"
#include "platform/status_overlay.h"

namespace qmv::account_detail {

// A text-only note in the status overlay.
inline void showStatus(const std::string& text) {
  if (const auto& overlay = Env::current().overlay) overlay->showImage("", text);
}

inline void setPushAlias(const std::string& alias, const std::string& type) {
  if (const auto& push = Env::current().push) push->setAlias(alias, type);
}

// Stores the account's phone and typed password and flushes, as every successful
// account change does.
inline void storeCredentials(const std::string& phone, const std::string& password, const char* phoneKey,
                             const char* passwordKey) {
  const auto& settings = Env::current().settings;
  if (!settings) return;
  settings->setString(phone, phoneKey);
  settings->setString(password, passwordKey);
  settings->synchronize();
}

}  // namespace qmv::account_detail
