#pragma once
// QrGenerator over libqrencode: 8-bit mode, error correction level M, the smallest
// version that holds the text.
#include "platform/qr_generator.h"

namespace qmv {

class QrencodeGenerator : public QrGenerator {
 public:
  std::optional<QrMatrix> encode(const std::string& text) const override;
};

}  // namespace qmv
