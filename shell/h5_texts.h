#pragma once
// The page host's own texts and names, in one place: the page table, the navigation-bar
// pictures, the cookies given to pages, the application URLs pages use, and the share
// panel's texts. "%@" formats are written as prefix and suffix.
namespace qmv::h5_texts {

struct H5Page {
  const char* path;   // after the web host
  const char* title;  // the known page's own title
};

// Indexed by the page type.
inline constexpr H5Page kPages[] = {
    {"/static/coinone/index.html", "一元夺宝"},    {"/static/lebbs/index.html", "圈子"},
    {"/static/dial/index.html", "幸运大转盘"},     {"/static/address/index.html", "绑定地址"},
    {"/static/experience/index.html", "个人等级"}, {"/static/lebbs/myTopic.html", "我的帖子"},
};
// The page host's screen, opened with the page type as "h5Type".
inline constexpr const char* kH5Screen = "QXH5ViewController";
inline constexpr long kCoinType = 0;
inline constexpr long kCommunityType = 1;
inline constexpr long kAddressType = 3;
inline constexpr long kLevelType = 4;
inline constexpr long kMyTopicType = 5;

// A page that could not be shown, whatever the reason (which goes to the log).
inline constexpr const char* kPageLoadFailed = "页面加载失败,请稍后再试";

inline constexpr const char* kBackImage = "back_3";
inline constexpr const char* kShareButtonImage = "share_h5";

// Cookies set on the web host before loading; the session goes under both spellings.
inline constexpr const char* kSessionCookieNames[] = {"sessionID", "sessionId"};
inline constexpr const char* kAppVersionCookie = "appVersion";
inline constexpr const char* kClientTypeCookie = "clientType";
inline constexpr const char* kDeviceTypeCookie = "deviceType";
inline constexpr const char* kDeviceIdCookie = "deviceId";
// This client's platform and kind of device, as the pages are told.
inline constexpr const char* kClientType = "linux";
inline constexpr const char* kDeviceType = "linux";

// Links with which a page asks for a native screen.
inline constexpr const char* kAppScheme = "qmv";
inline constexpr const char* kLoginHost = "login";
inline constexpr const char* kPayHost = "pay";
// A plain page that tried to load one of those links, which only the application opens.
inline constexpr const char* kAppLinkOnPlainPage = "这是应用内的链接，网页无法打开";
inline constexpr const char* kOpenAppLink = "在应用中打开";

// Share panel: picture, title and text of the coin page and of the community page.
inline constexpr const char* kCoinShareImage = "一元夺宝_03";
inline constexpr const char* kCoinShareTitle = "乐夺宝\n妙趣无穷";
inline constexpr const char* kCoinShareText = "保留本金\n骑士理应身经百战";
inline constexpr const char* kCommunityShareImage = "社区_03";
inline constexpr const char* kCommunityShareTitle = "享圈子\n为你而生";
inline constexpr const char* kCommunityShareText = "吐槽 分享 炫\n生活有圈子更有料!";
inline constexpr const char* kPublishScreen = "QXPublishViewController";

}  // namespace qmv::h5_texts
