#pragma once
// Every text the member centre's screens show: titles, labels, marks and the messages of
// their checks and results.
namespace qmv::member_centre_texts {

// Messages ("我的消息").
inline constexpr const char* kMessagesTitle = "我的消息";
inline constexpr const char* kNoMessages = "暂无消息";
inline constexpr const char* kUnreadMark = "未读";
// A message's "isRead" when the member has not read it.
inline constexpr const char* kUnread = "0";

// Feedback ("意见反馈").
inline constexpr const char* kFeedbackTitle = "意见反馈";
inline constexpr const char* kFeedbackPlaceholder = "请输入您的意见或建议";
inline constexpr const char* kContactPlaceholder = "手机号、邮箱或QQ（选填）";
inline constexpr const char* kSubmit = "提交";
inline constexpr const char* kNoFeedback = "请输入反馈内容";
inline constexpr const char* kBadFeedback = "反馈内容包含无法识别的字符";
inline constexpr const char* kFeedbackTooLong = "反馈内容不能超过500字";
inline constexpr const char* kBadContact = "联系方式格式不正确";
inline constexpr const char* kContactTooLong = "联系方式不能超过50个字符";
inline constexpr const char* kFeedbackSent = "提交成功,感谢您的反馈";
// Between the characters typed and the most allowed: "12/500".
inline constexpr const char* kCountSeparator = "/";

// The member tab ("我的").
inline constexpr const char* kMemberTabTitle = "我的";
// Screens of the layers this one does not reach that the tab opens (the orders list, the
// contacts, the wheel, the wallet's records, the page host's known pages), named and
// titled as those layers name them; the graphical client checks that they agree.
inline constexpr const char* kMyOrdersTitle = "我的订单";
inline constexpr const char* kMyOrdersScreen = "QXMyOrderViewController";
inline constexpr const char* kOrdersTypeKey = "type";
inline constexpr const char* kMyContactTitle = "我的人脉";
inline constexpr const char* kMyContactScreen = "MyContactViewController";
inline constexpr const char* kWheelTitle = "幸运大转盘";
inline constexpr const char* kWheelScreen = "WheelViewController";
inline constexpr const char* kFundRecordTitle = "资金明细";
inline constexpr const char* kFundRecordScreen = "FundRecordViewController";
inline constexpr const char* kVoucherTitle = "我的代金券";
inline constexpr const char* kVoucherScreen = "MyVoucherViewController";
inline constexpr const char* kCoinPageTitle = "一元夺宝";
inline constexpr const char* kAddressPageTitle = "绑定地址";
inline constexpr const char* kLevelPageTitle = "个人等级";
inline constexpr const char* kMyTopicPageTitle = "我的帖子";

// Screens, by name.
inline constexpr const char* kMessagesScreen = "MyNewsViewController";
inline constexpr const char* kFeedbackScreen = "FeedbackViewController";

}  // namespace qmv::member_centre_texts
