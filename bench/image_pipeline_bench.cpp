// A thumbnail from the disk cache: reading a 750x500 JPEG through DiskImageCache, then
// reading its header and decoding it scaled to 200 px wide, as the image loader's work
// item does. The picture is a gradient with noise, so that it compresses like a photo
// (about 1.5 bits a pixel at quality 82) rather than like a flat colour.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

#include "core/images/disk_image_cache.h"
#include "platform/clock.h"
#include "platform/linux/codec_image_decoder.h"

namespace qmv {
namespace {

std::string photoLikeJpeg(const CodecImageDecoder& codecs) {
  DecodedImage image{750, 500, 750 * 4, {}};
  image.pixels.resize(image.stride * image.height);
  std::uint32_t noise = 12345;
  for (int y = 0; y < image.height; ++y) {
    for (int x = 0; x < image.width; ++x) {
      noise = noise * 1103515245u + 12345u;
      const int grain = static_cast<int>((noise >> 16) & 31) - 16;
      char* p = &image.pixels[y * image.stride + x * 4];
      p[0] = static_cast<char>(std::clamp(x * 255 / 750 + grain, 0, 255));
      p[1] = static_cast<char>(std::clamp(y * 255 / 500 + grain, 0, 255));
      p[2] = static_cast<char>(std::clamp(((x / 25 + y / 25) % 2) * 120 + 60 + grain, 0, 255));
      p[3] = static_cast<char>(0xff);
    }
  }
  return codecs.encodeJpeg(image, 82).value();
}

void diskThumbnail(benchmark::State& state) {
  const CodecImageDecoder codecs;
  const std::string jpeg = photoLikeJpeg(codecs);
  const auto directory = std::filesystem::temp_directory_path() / "qmv_image_pipeline_bench";
  std::filesystem::remove_all(directory);
  DiskImageCache disk(directory, std::size_t{64} << 20, std::make_shared<SystemClock>());
  const std::string url = "http://bench.invalid/store_1_1.jpg";
  if (!disk.store(url, jpeg, {})) state.SkipWithError("cannot write the disk cache");
  const ImageLimits limits;
  for (auto _ : state) {
    const auto bytes = disk.read(url);
    const auto size = codecs.readSize(*bytes, limits);
    const ImageSize target{200, static_cast<int>(size->height * 200.0 / size->width + 0.5)};
    auto image = codecs.decode(*bytes, limits, target);
    if (!image.ok() || image->size() != ImageSize{200, 133}) {
      state.SkipWithError("the thumbnail did not decode to 200x133");
      break;
    }
    benchmark::DoNotOptimize(image->pixels.data());
  }
  state.counters["jpeg_bytes"] = static_cast<double>(jpeg.size());
  state.counters["pictures/s"] = benchmark::Counter(static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
  std::filesystem::remove_all(directory);
}
BENCHMARK(diskThumbnail)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace qmv

BENCHMARK_MAIN();
