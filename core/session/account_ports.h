#pragma once
// Internal to the account screens (and the card binding, which asks for SMS codes the same
// way): the steps they share over the installed Env.
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "core/common/settings_keys.h"
#include "core/request/base_net_api.h"
#include "core/session/account_texts.h"
#include "core/session/base_view_controller.h"
#include "core/session/mobile_code_net_api.h"
#include "platform/env.h"
#include "platform/settings_store.h"
#include "platform/status_overlay.h"

namespace qmv::account_detail {

// Stores the account's phone (null removes it) and typed password as one write and
// flushes, as every successful account change does. When they cannot be stored the
// member is told, since the next start would sign in with the old account; returns
// whether they were stored.
inline bool storeCredentials(const Json& phone, const std::string& password) {
  const auto& settings = Env::current().settings;
  if (settings->setObjects(Json{{kUserPhoneKey, phone}, {kPasswordKey, password}}).ok() && settings->synchronize()) {
    return true;
  }
  Env::current().overlay->showImage("", account_texts::kAccountNotSaved);
  return false;
}

// Asks for an SMS code of `type` (0; 1 for the phone change) for `phone` on behalf of
// `screen`, stopping the code request still held in `slot`. A correct answer keeps its session identifier in
// `sessionId`, shows "验证码发送成功" and runs `onSent` (the countdown); `onFinished`
// follows either way with the verdict.
inline void sendCodeRequest(std::shared_ptr<MobileCodeNetApi>& slot, BaseViewController& screen,
                            const std::string& phone, std::string& sessionId, std::function<void()> onSent,
                            std::function<void(bool correct)> onFinished, std::int64_t type = 0) {
  detachRequest(slot);
  slot = std::make_shared<MobileCodeNetApi>(phone, type);
  screen.attachRequest(*slot);
  slot->startWithCompletionBlockWithSuccess(
      [&sessionId, onSent, onFinished](MobileCodeNetApi& api) {
        const bool correct = api.isCorrectResult();
        if (correct) {
          sessionId = api.getSessionId();
          Env::current().overlay->showImage("", account_texts::kCodeSent);
          if (onSent) onSent();
        }
        if (onFinished) onFinished(correct);
      },
      [onFinished](BaseRequest&) {
        if (onFinished) onFinished(false);
      });
}

}  // namespace qmv::account_detail
