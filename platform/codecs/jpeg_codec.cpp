// libjpeg-turbo behind a setjmp error manager: every error, and a stream that ends early,
// jumps back to guarded() instead of exiting. The work between setjmp and longjmp keeps
// all its state in the session, so that the jump skips no destructor.
#include <csetjmp>
#include <cstdio>
#include <jpeglib.h>
#include <jerror.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "platform/codecs/detail/format_codecs.h"
#include "platform/codecs/image_codecs.h"

namespace qmv {
namespace {

struct ErrorManager {
  jpeg_error_mgr base;
  std::jmp_buf jump;
  char message[JMSG_LENGTH_MAX];
};

[[noreturn]] void failJump(j_common_ptr info) {
  auto* manager = reinterpret_cast<ErrorManager*>(info->err);
  manager->base.format_message(info, manager->message);
  std::longjmp(manager->jump, 1);
}

// Warnings are ignored, except the one for a stream that stops early: libjpeg would fill
// the rest with grey, and a truncated download must not pass for a picture.
void onMessage(j_common_ptr info, int level) {
  if (level < 0 && info->err->msg_code == JWRN_JPEG_EOF) failJump(info);
}

// Before jpeg_create_*, which keeps the manager it finds.
template <class Info>
void installErrors(ErrorManager& manager, Info& info) {
  info.err = jpeg_std_error(&manager.base);
  manager.base.error_exit = failJump;
  manager.base.emit_message = onMessage;
  manager.message[0] = '\0';
}

struct ReadSession {
  ErrorManager errors;
  jpeg_decompress_struct info;
  std::string_view bytes;
  ImageSize target;
  bool created = false;
  DecodedImage image;
  ~ReadSession() {
    if (created) jpeg_destroy_decompress(&info);
  }
};

void readHeader(ReadSession& s) {
  jpeg_create_decompress(&s.info);
  s.created = true;
  jpeg_mem_src(&s.info, reinterpret_cast<const unsigned char*>(s.bytes.data()),
               static_cast<unsigned long>(s.bytes.size()));
  jpeg_read_header(&s.info, TRUE);
}

void readPixels(ReadSession& s) {
  readHeader(s);
  s.info.out_color_space = JCS_EXT_RGBA;
  s.info.scale_denom = 8;
  s.info.scale_num = 8;
  if (!s.target.empty()) {
    for (unsigned num = 1; num < 8; ++num) {
      const auto covers = [&](JDIMENSION side, int wanted) {
        return (static_cast<unsigned long>(side) * num + 7) / 8 >= static_cast<unsigned long>(wanted);
      };
      if (covers(s.info.image_width, s.target.width) && covers(s.info.image_height, s.target.height)) {
        s.info.scale_num = num;
        break;
      }
    }
  }
  jpeg_start_decompress(&s.info);
  s.image = codecs::allocateImage({static_cast<int>(s.info.output_width), static_cast<int>(s.info.output_height)});
  while (s.info.output_scanline < s.info.output_height) {
    JSAMPROW row = reinterpret_cast<JSAMPROW>(s.image.pixels.data() + s.info.output_scanline * s.image.stride);
    jpeg_read_scanlines(&s.info, &row, 1);
  }
  jpeg_finish_decompress(&s.info);
}

template <class Session>
bool guarded(Session& s, void (*body)(Session&)) {
  if (setjmp(s.errors.jump) != 0) return false;
  body(s);
  return true;
}

struct WriteSession {
  ErrorManager errors;
  jpeg_compress_struct info;
  const DecodedImage* image = nullptr;
  int quality = 85;
  bool created = false;
  unsigned char* buffer = nullptr;
  unsigned long length = 0;
  std::vector<unsigned char> row;
  ~WriteSession() {
    if (created) jpeg_destroy_compress(&info);
    std::free(buffer);
  }
};

void writePixels(WriteSession& s) {
  jpeg_create_compress(&s.info);
  s.created = true;
  jpeg_mem_dest(&s.info, &s.buffer, &s.length);
  s.info.image_width = static_cast<JDIMENSION>(s.image->width);
  s.info.image_height = static_cast<JDIMENSION>(s.image->height);
  s.info.input_components = 3;
  s.info.in_color_space = JCS_RGB;
  jpeg_set_defaults(&s.info);
  jpeg_set_quality(&s.info, s.quality, TRUE);
  jpeg_start_compress(&s.info, TRUE);
  while (s.info.next_scanline < s.info.image_height) {
    const auto* source =
        reinterpret_cast<const unsigned char*>(s.image->pixels.data()) + s.info.next_scanline * s.image->stride;
    for (int x = 0; x < s.image->width; ++x) {
      // Premultiplied colour over white: c + (255 - a).
      const unsigned char alpha = source[4 * x + 3];
      for (int c = 0; c < 3; ++c) {
        s.row[3 * x + c] = static_cast<unsigned char>(std::min(255, source[4 * x + c] + 255 - alpha));
      }
    }
    JSAMPROW row = s.row.data();
    jpeg_write_scanlines(&s.info, &row, 1);
  }
  jpeg_finish_compress(&s.info);
}

}  // namespace

namespace codecs {

Result<ImageSize> jpegSize(std::string_view bytes) {
  ReadSession s;
  installErrors(s.errors, s.info);
  s.bytes = bytes;
  if (!guarded(s, readHeader)) return imageFailure(ImageError::kCorrupt, std::string("JPEG: ") + s.errors.message);
  return ImageSize{static_cast<int>(s.info.image_width), static_cast<int>(s.info.image_height)};
}

Result<DecodedImage> decodeJpeg(std::string_view bytes, ImageSize target) {
  ReadSession s;
  installErrors(s.errors, s.info);
  s.bytes = bytes;
  s.target = target;
  if (!guarded(s, readPixels)) return imageFailure(ImageError::kCorrupt, std::string("JPEG: ") + s.errors.message);
  return std::move(s.image);
}

}  // namespace codecs

Result<std::string> encodeJpeg(const DecodedImage& image, int quality) {
  if (image.width <= 0 || image.height <= 0 || image.stride < static_cast<std::size_t>(image.width) * 4 ||
      image.pixels.size() < image.stride * static_cast<std::size_t>(image.height)) {
    return Status::invalidArgument("no picture to encode");
  }
  WriteSession s;
  installErrors(s.errors, s.info);
  s.image = &image;
  s.quality = std::clamp(quality, 1, 100);
  s.row.resize(static_cast<std::size_t>(image.width) * 3);
  if (!guarded(s, writePixels)) return Status::ioError(std::string("JPEG encoding: ") + s.errors.message);
  return std::string(reinterpret_cast<const char*>(s.buffer), s.length);
}

}  // namespace qmv
