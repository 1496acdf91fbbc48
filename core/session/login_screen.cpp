#include "core/session/login_screen.h"

#include "core/session/base_view_controller.h"
#include "core/session/global_data.h"
#include "platform/env.h"
#include "platform/navigator.h"

namespace qmv {

bool hasSession() {
  const auto& self = GlobalData::sharedInstance().selfInfo();
  return self && !self->sessionId.empty();
}

void presentLoginScreen() {
  const auto& navigator = Env::current().navigator;
  const auto top = navigator->topScreen();
  if (top && top->name == BaseViewController::kLoginScreen) return;
  navigator->present(BaseViewController::kLoginScreen);
}

}  // namespace qmv
