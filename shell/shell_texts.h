#pragma once
// Texts of the application's shell: the tab bar, the server switch and the first-run
// guide.
namespace qmv::shell_texts {

// Under each tab's icon, in the tabs' order.
inline constexpr const char* kTabTitles[] = {"首页", "附近", "财富", "社区", "我的"};

inline constexpr const char* kProductionServer = "正式环境";
inline constexpr const char* kTestServer = "测试环境";
inline constexpr const char* kManualServer = "手动输入";

// The first-run guide's pages, its buttons and what its location page reports.
inline constexpr const char* kGuideOfferTitle = "发现身边好店";
inline constexpr const char* kGuideOfferText =
    "按分类、关键字或地图浏览城市里的商家和限时优惠，下单支付，管理钱包、银行卡、人脉和幸运大转盘。";
inline constexpr const char* kGuideLocationTitle = "开启定位";
inline constexpr const char* kGuideLocationText =
    "定位用来找出离你最近的商家并显示距离。位置只在查看附近商家时使用，可以随时在系统设置中关闭。";
inline constexpr const char* kGuideCityTitle = "选择城市";
inline constexpr const char* kGuideCityText = "首页和附近显示所选城市的商家，之后也可以在首页左上角切换。";
inline constexpr const char* kGuideAskLocation = "允许定位";
inline constexpr const char* kGuideChooseCity = "选择城市";
inline constexpr const char* kGuideNext = "下一步";
inline constexpr const char* kGuideStart = "开始使用";
inline constexpr const char* kGuideLocating = "正在定位…";
inline constexpr const char* kGuideLocated = "已获取位置，首页将显示附近的商家";
inline constexpr const char* kGuideServicesOff = "定位服务未开启，可以在系统设置中开启";
inline constexpr const char* kGuideLocateFailed = "暂时无法定位，进入首页后会再试一次";
inline constexpr const char* kGuideCityPrefix = "当前城市：";
// The city picker's screen, which the guide opens.
inline constexpr const char* kCityScreen = "AreaSelectView";

// The public OpenStreetMap tile server's credit, shown on the map.
inline constexpr const char* kDefaultTileAttribution = "© OpenStreetMap 贡献者";

}  // namespace qmv::shell_texts
