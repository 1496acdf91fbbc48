#pragma once
// The send of a one-shot form (a rating, feedback, a password change): the request
// replaces the screen's earlier one in its slot; a correct answer runs `onCorrect` (which
// shows the thanks, stores what must be kept and says whether all of it held), then the
// screen is popped before `finished` hears the verdict. Any other end keeps the screen
// and reports false; the request layer has already shown its alert.
#include <functional>
#include <memory>

#include "core/session/base_view_controller.h"
#include "platform/env.h"
#include "platform/navigator.h"

namespace qmv {

template <class Api>
void submitForm(BaseViewController& screen, std::shared_ptr<Api>& slot, std::shared_ptr<Api> request,
                std::function<bool()> onCorrect, const std::function<void(bool)>& finished) {
  detachRequest(slot);
  slot = std::move(request);
  screen.attachRequest(*slot);
  // The slot and `finished` are the screen's own; the screen detaches its request before
  // it goes, so neither outlives this callback.
  slot->startWithCompletionBlockWithSuccess(
      [&finished, onCorrect = std::move(onCorrect)](Api& api) {
        if (!api.isCorrectResult()) {
          if (finished) finished(false);
          return;
        }
        const bool held = onCorrect();
        Env::current().navigator->pop();
        if (finished) finished(held);
      },
      [&finished](Api&) {
        if (finished) finished(false);
      });
}

}  // namespace qmv
