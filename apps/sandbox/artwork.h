#pragma once
// The demo world's pictures, drawn rather than shipped: a gradient in the category's colour
// that each record's id varies, a pictogram of the category, the record's name and, on
// offers, a price tag. Photos come back as JPEG, icons and portraits as PNG with alpha.
// `width` is the width of the picture wanted; the height follows the picture's proportions,
// and nothing is drawn wider than the picture's own size.
#include <cstdint>
#include <string>
#include <vector>

namespace qmv::sandbox {

// Native sizes.
inline constexpr int kStorePhotoWidth = 750, kStorePhotoHeight = 500;
inline constexpr int kOfferWidth = 750, kOfferHeight = 420;
inline constexpr int kDescriptionWidth = 750, kDescriptionHeight = 1000;
inline constexpr int kBannerWidth = 750, kBannerHeight = 300;
inline constexpr int kProductSide = 750;
inline constexpr int kWheelSide = 750;
inline constexpr int kCategoryIconSide = 96;
inline constexpr int kPortraitSide = 256;
inline constexpr int kWelcomeWidth = 720, kWelcomeHeight = 1280;

// `category` is a store category of the catalogue (11 hot pot ... 81); its tens pick the
// colour and the pictogram.
std::string drawStore(int64_t id, int photo, int category, const std::string& name, int width);
std::string drawOffer(int64_t id, int category, const std::string& name, int64_t priceFen, int width);
std::string drawDescription(int64_t id, int category, const std::string& name, const std::string& text, int width);
std::string drawBanner(int64_t id, const std::string& title, int width);
std::string drawProduct(int64_t id, const std::string& name, int width);
std::string drawWheel(int64_t id, const std::vector<std::string>& prizes, int width);
std::string drawCategoryIcon(int subId, int width);
// The first character of `name` on a disc whose colour `seed` picks.
std::string drawPortrait(const std::string& seed, const std::string& name);
std::string drawWelcome();

}  // namespace qmv::sandbox
