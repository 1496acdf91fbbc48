#include "core/session/screen_state.h"

#include "core/request/request_texts.h"
#include "core/session/base_view_controller.h"

namespace qmv {

ScreenState screenStateOf(const BaseViewController& screen, bool hasRows, bool ended, const std::string& emptyText) {
  using Kind = ScreenState::Kind;
  if (hasRows) return {};
  // Both warnings come from a connection that failed; whether the network itself is down
  // changes nothing the member can do but try again.
  if (screen.warning() != BaseViewController::Warning::None) {
    return {Kind::Failed, request_texts::kConnectionFailed, true};
  }
  if (screen.isLoadingShown()) return {Kind::Loading, BaseViewController::kLoadingText, false};
  if (ended) return {Kind::Empty, emptyText, false};
  return {};
}

}  // namespace qmv
