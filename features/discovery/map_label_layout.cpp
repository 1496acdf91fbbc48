#include "features/discovery/map_label_layout.h"

#include <cmath>

namespace qmv {

namespace {

bool overlap(const LabelBox& a, const LabelBox& b, double gap) {
  return a.x < b.x + b.width + gap && b.x < a.x + a.width + gap && a.y < b.y + b.height + gap &&
         b.y < a.y + a.height + gap;
}

bool usable(const LabelBox& box) {
  return std::isfinite(box.x) && std::isfinite(box.y) && std::isfinite(box.width) && std::isfinite(box.height) &&
         box.width > 0 && box.height > 0;
}

}  // namespace

std::vector<bool> shownLabels(const std::vector<LabelBox>& boxes, double gap) {
  std::vector<bool> shown(boxes.size(), false);
  std::vector<const LabelBox*> placed;
  for (std::size_t i = 0; i < boxes.size(); ++i) {
    if (!usable(boxes[i])) continue;
    bool free = true;
    for (const LabelBox* other : placed) {
      if (overlap(boxes[i], *other, gap)) {
        free = false;
        break;
      }
    }
    if (!free) continue;
    shown[i] = true;
    placed.push_back(&boxes[i]);
  }
  return shown;
}

}  // namespace qmv
