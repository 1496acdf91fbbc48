#include "platform/codecs/image_codecs.h"

#include <gtest/gtest.h>
#include <webp/encode.h>

#include <cstdint>
#include <cstring>
#include <functional>

namespace qmv {
namespace {

// Left half opaque red, right half opaque blue; the top 10 rows half-transparent red.
DecodedImage sample(int width, int height) {
  DecodedImage image;
  image.width = width;
  image.height = height;
  image.stride = static_cast<std::size_t>(width) * 4;
  image.pixels.resize(image.stride * height);
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      unsigned char* p = reinterpret_cast<unsigned char*>(image.pixels.data()) + y * image.stride + 4 * x;
      const bool red = x < width / 2 || y < 10;
      p[0] = red ? 255 : 0;
      p[2] = red ? 0 : 255;
      p[3] = y < 10 ? 128 : 255;
    }
  }
  return image;
}

// `sample`'s channels are 0 or 255, which the encoder's unpremultiplying leaves as they are.
std::string png(const DecodedImage& image) {
  auto encoded = encodePng(image);
  EXPECT_TRUE(encoded.ok()) << encoded.status().toString();
  return encoded.valueOr("");
}

std::string webp(const DecodedImage& image, bool lossless) {
  uint8_t* data = nullptr;
  const auto* rgba = reinterpret_cast<const uint8_t*>(image.pixels.data());
  const int stride = static_cast<int>(image.stride);
  const std::size_t size = lossless ? WebPEncodeLosslessRGBA(rgba, image.width, image.height, stride, &data)
                                    : WebPEncodeRGBA(rgba, image.width, image.height, stride, 80, &data);
  std::string out(reinterpret_cast<char*>(data), size);
  WebPFree(data);
  return out;
}

std::string jpeg(const DecodedImage& image) {
  auto encoded = encodeJpeg(image, 90);
  EXPECT_TRUE(encoded.ok()) << encoded.status().toString();
  return encoded.valueOr("");
}

const unsigned char* pixel(const DecodedImage& image, int x, int y) {
  return reinterpret_cast<const unsigned char*>(image.pixels.data()) + y * image.stride + 4 * x;
}

std::uint32_t crc32(std::string_view bytes) {
  std::uint32_t crc = 0xffffffffu;
  for (unsigned char b : bytes) {
    crc ^= b;
    for (int k = 0; k < 8; ++k) crc = (crc >> 1) ^ (0xedb88320u & (0u - (crc & 1u)));
  }
  return ~crc;
}

void putBigEndian(std::string& s, std::size_t at, std::uint32_t value, int bytes) {
  for (int i = 0; i < bytes; ++i) s[at + i] = static_cast<char>(value >> (8 * (bytes - 1 - i)));
}

// A real PNG whose IHDR, CRC included, declares another size.
std::string pngDeclaring(std::uint32_t width, std::uint32_t height) {
  std::string s = png(sample(4, 4));
  putBigEndian(s, 16, width, 4);
  putBigEndian(s, 20, height, 4);
  putBigEndian(s, 29, crc32(std::string_view(s).substr(12, 17)), 4);
  return s;
}

// A real JPEG whose frame header declares another size.
std::string jpegDeclaring(std::uint16_t width, std::uint16_t height) {
  std::string s = jpeg(sample(16, 16));
  const std::size_t frame = s.find("\xff\xc0");
  putBigEndian(s, frame + 5, height, 2);
  putBigEndian(s, frame + 7, width, 2);
  return s;
}

std::string riff(std::string chunks) {
  std::string s = "RIFF";
  const auto size = static_cast<std::uint32_t>(4 + chunks.size());
  for (int i = 0; i < 4; ++i) s += static_cast<char>(size >> (8 * i));
  return s + "WEBP" + chunks;
}

// A lossless WebP header, 14 bits a side.
std::string webpDeclaring(std::uint32_t width, std::uint32_t height) {
  const std::uint32_t bits = (width - 1) | ((height - 1) << 14);
  std::string chunk = "VP8L";
  chunk += std::string("\x0a\x00\x00\x00\x2f", 5);
  for (int i = 0; i < 4; ++i) chunk += static_cast<char>(bits >> (8 * i));
  return riff(chunk + std::string(5, '\0'));
}

// An extended header with the animation flag and a 64x64 canvas.
std::string animatedWebp() {
  return riff(std::string("VP8X\x0a\x00\x00\x00\x02\x00\x00\x00\x3f\x00\x00\x3f\x00\x00", 18));
}

TEST(ImageCodecsTest, RefusesHostileInputBeforeDecoding) {
  const std::string goodPng = png(sample(64, 48));
  const std::string goodJpeg = jpeg(sample(64, 48));
  const std::string goodWebp = webp(sample(64, 48), false);
  ImageLimits small;
  small.maxBytes = 100;
  struct Case {
    const char* name;
    std::string bytes;
    ImageError expected;
    ImageLimits limits = {};
  };
  const Case cases[] = {
      {"empty", "", ImageError::kUnsupported},
      {"wrong magic", "GIF89a\x01\x00\x01\x00", ImageError::kUnsupported},
      {"text", "<html>not a picture</html>", ImageError::kUnsupported},
      {"animated WebP", animatedWebp(), ImageError::kUnsupported},
      {"PNG 20000x20000", pngDeclaring(20000, 20000), ImageError::kTooLarge},
      {"PNG wider than a side", pngDeclaring(9000, 10), ImageError::kTooLarge},
      {"PNG over the pixel count", pngDeclaring(6000, 5000), ImageError::kTooLarge},
      {"JPEG 20000x20000", jpegDeclaring(20000, 20000), ImageError::kTooLarge},
      {"WebP 16000x16000", webpDeclaring(16000, 16000), ImageError::kTooLarge},
      {"bytes over the cap", goodPng, ImageError::kTooLarge, small},
      {"PNG truncated", goodPng.substr(0, goodPng.size() / 2), ImageError::kCorrupt},
      {"JPEG truncated", goodJpeg.substr(0, goodJpeg.size() * 2 / 3), ImageError::kCorrupt},
      {"WebP truncated", goodWebp.substr(0, goodWebp.size() / 2), ImageError::kCorrupt},
      {"PNG magic then garbage", "\x89PNG\r\n\x1a\n" + std::string(200, 'x'), ImageError::kCorrupt},
      {"JPEG magic then garbage", "\xff\xd8\xff" + std::string(200, '\x01'), ImageError::kCorrupt},
      {"WebP magic then garbage", riff(std::string(40, '\x07')), ImageError::kCorrupt},
      {"PNG with a bad header checksum", goodPng.substr(0, 29) + "XXXX" + goodPng.substr(33), ImageError::kCorrupt},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    auto decoded = decodeImage(c.bytes, c.limits, {32, 32});
    ASSERT_FALSE(decoded.ok());
    EXPECT_EQ(imageErrorOf(decoded.status()), c.expected) << decoded.status().toString();
    if (c.expected != ImageError::kCorrupt) {
      EXPECT_EQ(imageErrorOf(readImageSize(c.bytes, c.limits).status()), c.expected);
    }
  }
  // An output size beyond the caps is refused as well, whatever the picture.
  EXPECT_EQ(imageErrorOf(decodeImage(goodPng, {}, {20000, 20000}).status()), ImageError::kTooLarge);
  EXPECT_FALSE(encodeJpeg(DecodedImage{}, 85).ok());
  EXPECT_FALSE(encodePng(DecodedImage{}).ok());
}

TEST(ImageCodecsTest, DecodesEachFormatToTheRequestedSize) {
  const DecodedImage original = sample(300, 200);
  const struct {
    const char* name;
    std::string bytes;
    bool exactAlpha;
  } pictures[] = {
      {"PNG", png(original), true},
      {"JPEG", jpeg(original), false},
      {"WebP lossy", webp(original, false), false},
      {"WebP lossless", webp(original, true), true},
      // Premultiplied pixels written back out: alpha and colour survive the round trip.
      {"PNG of decoded pixels", png(decodeImage(png(original), {}).valueOr({})), true},
  };
  const ImageSize targets[] = {{}, {75, 50}, {37, 120}, {450, 300}};
  for (const auto& picture : pictures) {
    SCOPED_TRACE(picture.name);
    auto size = readImageSize(picture.bytes, {});
    ASSERT_TRUE(size.ok()) << size.status().toString();
    EXPECT_EQ(*size, (ImageSize{300, 200}));
    for (ImageSize target : targets) {
      SCOPED_TRACE(std::to_string(target.width) + "x" + std::to_string(target.height));
      auto decoded = decodeImage(picture.bytes, {}, target);
      ASSERT_TRUE(decoded.ok()) << decoded.status().toString();
      const ImageSize expected = target.empty() ? ImageSize{300, 200} : target;
      ASSERT_EQ(decoded->size(), expected);
      ASSERT_EQ(decoded->pixels.size(), decoded->stride * expected.height);
      // Red stays left and blue right, below the translucent band.
      const unsigned char* left = pixel(*decoded, expected.width / 4, expected.height * 3 / 4);
      const unsigned char* right = pixel(*decoded, expected.width * 3 / 4, expected.height * 3 / 4);
      EXPECT_GT(left[0], 200);
      EXPECT_LT(left[2], 60);
      EXPECT_LT(right[0], 60);
      EXPECT_GT(right[2], 200);
      if (picture.exactAlpha && target.empty()) {
        // Premultiplied: half-transparent red is (128, 0, 0, 128).
        const unsigned char* band = pixel(*decoded, 5, 2);
        EXPECT_EQ(band[3], 128);
        EXPECT_EQ(band[0], 128);
      }
    }
  }
  // The quality setting reaches the encoder, and the result reads back.
  const auto rough = encodeJpeg(original, 10), fine = encodeJpeg(original, 95);
  ASSERT_TRUE(rough.ok() && fine.ok());
  EXPECT_LT(rough->size(), fine->size());
  EXPECT_EQ(fitWithin({1280, 960}, 640), (ImageSize{640, 480}));
  EXPECT_EQ(fitWithin({300, 4000}, 640), (ImageSize{48, 640}));
  EXPECT_EQ(fitWithin({300, 200}, 640), (ImageSize{300, 200}));
}

}  // namespace
}  // namespace qmv
