#include "platform/linux/qrencode_generator.h"

#include <qrencode.h>

namespace qmv {

std::optional<QrMatrix> QrencodeGenerator::encode(const std::string& text) const {
  // No QR version holds more than 2953 bytes; longer texts are refused before the cast.
  if (text.empty() || text.size() > 4096) return std::nullopt;
  // The length is given so that bytes after an embedded NUL are encoded too.
  QRcode* code = QRcode_encodeData(static_cast<int>(text.size()), reinterpret_cast<const unsigned char*>(text.data()),
                                   0, QR_ECLEVEL_M);
  if (!code) return std::nullopt;
  QrMatrix matrix;
  matrix.width = code->width;
  const std::size_t count = static_cast<std::size_t>(code->width) * code->width;
  matrix.modules.resize(count);
  // The lowest bit of each byte is the module's colour; the others describe its role.
  for (std::size_t i = 0; i < count; ++i) matrix.modules[i] = code->data[i] & 1;
  QRcode_free(code);
  return matrix;
}

}  // namespace qmv
