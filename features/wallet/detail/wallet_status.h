#pragma once
// Internal to the wallet screens: their notes and error messages in the status overlay.
// A platform without an overlay shows nothing.
#include <string>

#include "features/wallet/wallet_texts.h"
#include "platform/env.h"
#include "platform/status_overlay.h"

namespace qmv::wallet_detail {

// A text-only note.
inline void showStatus(const std::string& text) {
  if (const auto& overlay = Env::current().overlay) overlay->showImage("", text);
}

// A refusal, shown with the error picture.
inline void showError(const std::string& text) {
  if (const auto& overlay = Env::current().overlay) overlay->showImage(wallet_texts::kErrorImage, text);
}

}  // namespace qmv::wallet_detail
