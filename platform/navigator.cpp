#include "platform/navigator.h"

namespace qmv {

std::optional<Screen> Navigator::topScreen() const {
  const auto all = layers();
  for (auto layer = all.rbegin(); layer != all.rend(); ++layer) {
    if (!layer->empty()) return layer->back();
  }
  return std::nullopt;
}

}  // namespace qmv
