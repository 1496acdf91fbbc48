#pragma once
// Which pin titles a map shows. Titles are placed in the pins' order (the list's order:
// the nearest or best first) and a title that would cover one already placed is left
// off; its pin stays, and its title comes back when a zoom parts them. Greedy and
// quadratic: a map screen shows a page of pins, not thousands.
#include <vector>

namespace qmv {

struct LabelBox {
  double x = 0;  // left edge, in the map's pixels
  double y = 0;  // top edge
  double width = 0;
  double height = 0;
};

// For each box, whether its title is shown. Boxes closer than `gap` pixels count as
// overlapping, so that two titles never touch.
std::vector<bool> shownLabels(const std::vector<LabelBox>& boxes, double gap = 4);

}  // namespace qmv
