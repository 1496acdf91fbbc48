#pragma once
// The texts the discovery records show, in one place. "%@" in the system's own texts
// becomes plain concatenation; the numeric formats are printf formats.
namespace qmv::discovery_texts {

inline constexpr const char* kNoDistance = "--km";
inline constexpr const char* kMetresFormat = "%.2fm";
inline constexpr const char* kKilometresFormat = "%.2fkm";

// Store rows (full-width yuan sign).
inline constexpr const char* kStorePricePrefix = "￥";
inline constexpr const char* kStoreShopPricePrefix = "门市价:￥";
// Store rows and the offer screen: "已售%@份".
inline constexpr const char* kSoldPrefix = "已售";
inline constexpr const char* kSoldSuffix = "份";

// Offer screen (half-width yen sign).
inline constexpr const char* kOfferPricePrefix = "¥";
inline constexpr const char* kOfferOriginalPricePrefix = "原价:¥";

}  // namespace qmv::discovery_texts
