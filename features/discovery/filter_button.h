#pragma once
// One button of the store filter bar: the chosen entry's text and an arrow that points
// up while its drop-down is open.
#include <string>

namespace qmv {

struct FilterButton {
  std::string title;
  bool arrowUp = false;
};

}  // namespace qmv
