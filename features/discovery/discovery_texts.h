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
// What the price beside them is: the first-purchase price or the current one. A price
// shown without one of these reads as the other when two screens disagree.
inline constexpr const char* kFirstPriceLabel = "首单价";
inline constexpr const char* kNowPriceLabel = "现价";

}  // namespace qmv::discovery_texts

namespace qmv::discovery_texts {

// Store search and its filters.
inline constexpr const char* kAllDistricts = "全部";
inline constexpr const char* kAllInCategory = "全部";    // a category's own entry first
inline constexpr const char* kOtherInCategory = "其他";  // and its catch-all, kept last
// The city list's section of recently chosen cities.
inline constexpr const char* kHistorySection = "历";
inline constexpr const char* kAreaButtonTitle = "全部地区";
inline constexpr const char* kCategoryButtonTitle = "全部分类";
inline constexpr const char* kSortButtonTitle = "智能排序";
inline constexpr const char* kSortLabels[] = {"智能排序", "离我最近", "人均最低", "好评最多"};
inline constexpr const char* kHistoryTitle = "历史搜索";
// The keyword field of the nearby tab and the city picker's field.
inline constexpr const char* kSearchPlaceholder = "搜索商家";
inline constexpr const char* kCitySearchPlaceholder = "输入城市名或拼音";
inline constexpr const char* kHistoryClear = "清空";
inline constexpr const char* kHistoryEmpty = "暂无历史记录";
// The nearby list without stores: in the city under its filters, or for a keyword.
inline constexpr const char* kNoStoresHere = "附近暂无商家,换个筛选条件试试";
inline constexpr const char* kNoMatchingStores = "没有找到相关商家";
// The city picker's search that matches no city.
inline constexpr const char* kNoCityMatch = "没有找到匹配的城市";
inline constexpr const char* kLocationError = "位置信息错误";
inline constexpr const char* kAllCategoriesId = "0";  // the catalogue's "全部分类"

// Nearby map.
inline constexpr const char* kMapAllCategoriesId = "0";
inline constexpr const char* kEnableLocation = "请开启定位功能";
// "%@分 已售%@ 人均:￥%@" and "已售%@ 人均:￥%@" (full-width yuan sign).
inline constexpr const char* kCalloutMarkSuffix = "分 ";
inline constexpr const char* kCalloutSoldPrefix = "已售";
inline constexpr const char* kCalloutPerPersonPrefix = " 人均:￥";

// Single-store map and its route hand-off.
inline constexpr const char* kNavigateTitlePrefix = "导航到 ";
inline constexpr const char* kAppleMaps = "苹果地图";
inline constexpr const char* kBaiduMaps = "百度地图";
// The desktop's own map application, reached through a "geo:" URI (WGS-84).
inline constexpr const char* kDesktopMaps = "地图";
inline constexpr const char* kGeoFormat = "geo:%.8f,%.8f";
inline constexpr const char* kAppleRouteFormat = "http://maps.apple.com/?daddr=%.8f,%.8f&dirflg=d";
inline constexpr const char* kCancel = "取消";
inline constexpr const char* kNoUserLocation = "未获取到用户当前位置";
inline constexpr const char* kBaiduMapScheme = "baidumap://map/";
// The doubled "&&" is what the map application has always been sent.
inline constexpr const char* kBaiduRouteFormat =
    "baidumap://map/direction?origin=%.8f,%.8f&destination=%.8f,%.8f&&mode=driving";

// Store and offer screens.
inline constexpr const char* kPictureCountFormat = "%ld张";
inline constexpr const char* kOpeningHoursPrefix = "营业时间: ";
inline constexpr const char* kPerPersonPrefix = "人均¥";
inline constexpr const char* kOffersSection = "优惠活动";
inline constexpr const char* kCommentsSection = "用户评论";
inline constexpr const char* kCommentCountSuffix = "条评论";
inline constexpr const char* kMoreComments = "查看更多评论";
inline constexpr const char* kNoPhone = "该商家暂未提供电话";
inline constexpr const char* kTelPrefix = "tel:";
inline constexpr const char* kPackageSection = "套餐";
inline constexpr const char* kNoticeSection = "购买须知";
inline constexpr const char* kValidity = "有效期:";
inline constexpr const char* kUseTime = "使用时间:";
inline constexpr const char* kUseRules = "使用规则:";
inline constexpr const char* kBullet = "●";

// Home screen and location.
inline constexpr const char* kPlaceholderStoreId = "-1";
inline constexpr const char* kLocateAlertTitle = "提示";
inline constexpr const char* kLocateFailed = "定位失败,请手动选择当前城市";
inline constexpr const char* kConfirm = "确认";
inline constexpr const char* kSwitchCityTitle = "切换城市提示";
inline constexpr const char* kSwitchCityMessagePrefix = "检测到您所在的城市发生变化,当前城市为";
inline constexpr const char* kSwitchCityMessageSuffix = ",是否切换到当前城市?";
inline constexpr const char* kSwitch = "切换";

// Screens other screens open, by name.
inline constexpr const char* kStoreDetailScreen = "QXRStoreDetailViewController";
inline constexpr const char* kActivityScreen = "QXActivitiesViewController";
inline constexpr const char* kMapScreen = "MapViewController";
inline constexpr const char* kCommentsScreen = "UserCommitViewController";
// The submit screen lives in orders; an offer only needs its name to open it.
inline constexpr const char* kSubmitScreen = "QXSubmitOderViewController";
// The plain page screen, with "title" and "url" (a banner's page).
inline constexpr const char* kWebScreen = "WebViewController";

}  // namespace qmv::discovery_texts

namespace qmv::discovery_texts {

// Home sections.
inline constexpr const char* kRecommendSection = "名店推荐";
inline constexpr const char* kPopularSection = "热门活动";

}  // namespace qmv::discovery_texts

namespace qmv::discovery_texts {

// A store's comments ("用户评论", the screen "查看更多评论" opens) and the member's own
// ratings ("我的评价"). The star filter's labels are indexed by the "star" value sent.
inline constexpr const char* kCommentsTitle = "用户评论";
inline constexpr const char* kStarFilters[] = {"全部", "1星", "2星", "3星", "4星", "5星"};
inline constexpr const char* kNoComments = "暂无评论";
inline constexpr const char* kMyRatingsTitle = "我的评价";
inline constexpr const char* kNoRatings = "暂无评价";
inline constexpr const char* kStarFull = "★";
inline constexpr const char* kStarEmpty = "☆";
inline constexpr const char* kMyRatingsScreen = "MyGradeViewController";

}  // namespace qmv::discovery_texts

namespace qmv::discovery_texts {

// Bookmarks ("我的收藏"): a tab of stores and a tab of offers, and the state a store or
// offer screen's bookmark button reports.
inline constexpr const char* kFavoritesTitle = "我的收藏";
inline constexpr const char* kFavoriteTabs[] = {"商家", "活动"};
inline constexpr const char* kNoFavoriteStores = "暂无收藏的商家";
inline constexpr const char* kNoFavoriteOffers = "暂无收藏的活动";
inline constexpr const char* kBookmarked = "已收藏";
inline constexpr const char* kNotBookmarked = "未收藏";
// The bookmark state as sent ("favorite").
inline constexpr const char* kFavoriteOn = "1";
inline constexpr const char* kFavoritesScreen = "MyFavoriteViewController";

}  // namespace qmv::discovery_texts
