#pragma once
// What a screen's list area shows when it has no rows to show, decided in one place for
// every list: the loading view while its first page is on its way, the failure with its
// reason when the connection failed, the list's own empty sentence once it came back
// empty, else the rows themselves. Front ends draw it in one widget.
#include <string>

namespace qmv {

class BaseViewController;

struct ScreenState {
  enum class Kind { Content, Loading, Empty, Failed };
  Kind kind = Kind::Content;
  // The sentence shown: the loading text, the empty sentence or the failure's reason.
  std::string text;
  // A failure offers to load again.
  bool retry = false;
  friend bool operator==(const ScreenState&, const ScreenState&) = default;
};

// The state of `screen`'s list: `hasRows` whether it shows any, `ended` whether its
// last answer said there is nothing (more) to load, `emptyText` the list's sentence for
// no rows. A screen with rows keeps showing them whatever happens to a later request.
ScreenState screenStateOf(const BaseViewController& screen, bool hasRows, bool ended, const std::string& emptyText);

}  // namespace qmv
