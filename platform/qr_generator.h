#pragma once
// QR code generation, a port so that the core gets a code's modules and leaves drawing
// them (an image view, a PNG file, terminal blocks) to the front end.
#include <optional>
#include <string>
#include <vector>

namespace qmv {

// A QR code as its square matrix of modules, without the quiet zone.
struct QrMatrix {
  int width = 0;                       // modules per side
  std::vector<unsigned char> modules;  // row-major, width * width, non-zero = dark

  // Whether the module at column x, row y is dark; outside the matrix (the quiet zone
  // around it) every module is light.
  bool dark(int x, int y) const {
    return x >= 0 && y >= 0 && x < width && y < width && modules[static_cast<std::size_t>(y) * width + x] != 0;
  }
};

class QrGenerator {
 public:
  // Modules of a light border that readers expect around a code.
  static constexpr int kQuietZone = 4;

  virtual ~QrGenerator() = default;

  // The code of `text` (taken as bytes), or nullopt when it cannot be encoded (too
  // long). Thread-safe.
  virtual std::optional<QrMatrix> encode(const std::string& text) const = 0;
};

}  // namespace qmv
