#include "apps/sandbox/parameter_rules.h"

#include <glib.h>

#include <map>

namespace qmv::sandbox {
namespace {

using enum ParamKind;

// Sizes are bytes of UTF-8: a field the client limits in characters gets four bytes each
// (a rating's 200 characters), a search word what the search history keeps.

// Arguments several endpoints share.
const ParamRule kSession{"sessionId", kToken, 64, "会话"};
const ParamRule kPage{"page", kInteger, 7, "页码"};
const ParamRule kArea{"area", kToken, 12, "地区"};
const ParamRule kCategory{"type", kToken, 12, "分类"};
const ParamRule kCoordinate{"coordinate", kToken, 64, "坐标"};
const ParamRule kStoreId{"storeId", kInteger, 19, "商家"};
const ParamRule kCommodityId{"commodityId", kInteger, 19, "活动"};
const ParamRule kOrderId{"orderId", kToken, 32, "订单号"};
const ParamRule kMobile{"mobile", kToken, 20, "手机号"};
const ParamRule kPhone{"phone", kToken, 20, "手机号"};
const ParamRule kCode{"code", kToken, 16, "验证码"};
const ParamRule kPassword{"password", kToken, 64, "密码"};
const ParamRule kNewPassword{"newPassword", kToken, 64, "密码"};
const ParamRule kListType{"type", kInteger, 2, "类型"};

// The store searches' arguments, by keyword and by category alike.
const std::vector<ParamRule> kSearch = {
    kSession, {"keyword", kLine, 256, "关键字"}, kPage, kArea, kCategory, {"sort", kInteger, 2, "排序"}, kCoordinate,
};

// The prepare-pay arguments, shared by its three endpoints.
const std::vector<ParamRule> kPayment = {
    kSession,
    {"totalFee", kInteger, 12, "支付金额"},
    {"accountType", kInteger, 2, "支付方式"},
    {"useBalance", kToken, 8, "余额选项"},
    {"productId", kInteger, 19, "夺宝商品"},
    {"series", kToken, 16, "期号"},
    {"acount", kInteger, 7, "购买数量"},
    kStoreId,
    {"activityId", kInteger, 19, "活动"},
    {"activityCount", kInteger, 7, "购买数量"},
    {"isFirstOrder", kToken, 4, "首单标记"},
};

const std::map<std::string, EndpointParameters>& table() {
  static const std::map<std::string, EndpointParameters> rules = {
      // Account
      {"getUserLogin", {{{"userName", kLine, 64, "用户名"}, {"userPassword", kToken, 64, "密码"}}}},
      {"postUserRegisterWeb",
       {{kPassword, kPhone, {"userName", kLine, 64, "用户名"}, {"inviteId", kLine, 32, "邀请码"}, kCode, kSession}}},
      {"getMobileCode", {{kMobile, kSession}}},
      {"getCheckCode4ChgMobile", {{kMobile, kSession}}},
      {"getCheckCode", {{kMobile, kCode, kSession}}},
      {"postFindPassword", {{kPhone, kNewPassword, kSession}}},
      {"getUserLogout", {{kSession}}},
      {"postChangePassword", {{kNewPassword, {"oldPassword", kToken, 64, "原密码"}, kSession}}},
      {"getUserInfo", {{kSession}}},
      {"postChangeSelf",
       {{kSession,
         {"nickName", kLine, 64, "昵称"},
         {"sex", kLine, 8, "性别"},
         {"birthday", kLine, 32, "生日"},
         {"email", kLine, 128, "邮箱"},
         {"address", kLine, 256, "地址"},
         {"address_name", kLine, 64, "收货人"},
         {"address_phone", kToken, 20, "收货电话"},
         {"postcode", kToken, 10, "邮编"},
         {"name", kLine, 64, "姓名"},
         kPhone}}},
      {"postPortrait", {{kSession}, true}},
      {"getMyMessage", {{kSession, kPage}}},
      {"getMyReadMessage", {{kSession}}},
      {"postFeedback",
       {{kSession, {"concent", kText, 2000, "反馈内容"}, {"contact", kLine, 200, "联系方式"}, kListType}}},
      // Discovery
      {"getCategoryList", {}},
      {"getCategorTemplates1", {}},
      {"getCarouselList", {}},
      {"getAreaList", {{{"ver", kToken, 16, "版本"}}}},
      {"getSearchList", {kSearch}},
      {"getTypeSearchList", {kSearch}},
      {"getMapList", {{kSession, kCoordinate, kCategory, kArea}}},
      {"getStoreDetailInfo", {{kSession, kStoreId}}},
      {"getCommodityDetailInfo", {{kSession, kCommodityId}}},
      {"getRemarkMeByUser", {{kStoreId, kPage, {"star", kInteger, 2, "评分"}}}},
      {"getMyRemark", {{kSession, kPage}}},
      {"PostGrade", {{kSession, kOrderId, {"star", kInteger, 2, "评分"}, {"content", kText, 800, "评价内容"}}}},
      {"postBookmark", {{kSession, kStoreId}}},
      {"postCollectCommodity", {{kSession, kCommodityId}}},
      {"getMyFavorite", {{kSession, kPage}}},
      {"getMyCommodityFavorite", {{kSession, kPage}}},
      {"getRecommendStore", {{kSession, kArea}}},
      {"getPopularList", {{kSession, kArea, kPage}}},
      // Orders
      {"postPayForStore", {kPayment}},
      {"postPayForActivity", {kPayment}},
      {"postPayForIndiana", {kPayment}},
      {"getIndianaProduct", {{kSession, {"productId", kInteger, 19, "夺宝商品"}, {"series", kToken, 16, "期号"}}}},
      {"getMyPosts", {{kSession, kPage, kListType}}},
      {"getOrderDetail", {{kSession, kOrderId}}},
      {"postRefund", {{kSession, kOrderId}}},
      {"getMyVoucher", {{kSession, kPage}}},
      {kCompletionRoute,
       {{{"prepay_id", kToken, 64, "支付单"}, {"result", kToken, 16, "支付结果"}, {"sign", kToken, 128, "签名"}}}},
      // Wallet
      {"getTopUpListForUser", {{kSession, kPage, kListType}}},
      {"getBoundBankCard", {{kSession}}},
      {"bindBankCard",
       {{kSession,
         {"name", kLine, 64, "持卡人姓名"},
         {"cardId", kToken, 32, "银行卡号"},
         {"certifId", kToken, 32, "身份证号"},
         {"identifying", kToken, 16, "验证码"}}}},
      {"unBindingBankCard", {{kSession}}},
      {"withDraw", {{kSession, {"amount", kInteger, 12, "提现金额"}}}},
      // Referral
      {"getMyContacts", {{kSession, kPhone, kPage}}},
      {"getIndirectContacts", {{kSession, kPhone, kPage}}},
      // Prize wheel
      {"getWheels", {{kSession}}},
      {"getWheelResult", {{kSession, {"id", kInteger, 19, "转盘"}}}},
  };
  return rules;
}

bool isTokenByte(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '.' || c == '_' ||
         c == '-' || c == ',';
}

// Whether `value` is text of `kind` (any size: the caller checks that).
bool hasKind(const std::string& value, ParamKind kind) {
  switch (kind) {
    case kToken:
      for (const char c : value) {
        if (!isTokenByte(c)) return false;
      }
      return true;
    case kInteger: {
      const size_t digits = !value.empty() && (value[0] == '-' || value[0] == '+') ? 1 : 0;
      if (!value.empty() && digits == value.size()) return false;
      return value.find_first_not_of("0123456789", digits) == std::string::npos;
    }
    case kLine:
    case kText:
      break;
  }
  if (!g_utf8_validate_len(value.data(), value.size(), nullptr)) return false;
  for (const char* at = value.data(); at < value.data() + value.size(); at = g_utf8_next_char(at)) {
    const gunichar c = g_utf8_get_char(at);
    if (kind == kText && (c == '\n' || c == '\r' || c == '\t')) continue;
    switch (g_unichar_type(c)) {
      case G_UNICODE_CONTROL:
        return false;
      // Invisible and direction-changing characters (zero-width joiners, bidi overrides)
      // let one name pass for another on a single line.
      case G_UNICODE_FORMAT:
      case G_UNICODE_LINE_SEPARATOR:
      case G_UNICODE_PARAGRAPH_SEPARATOR:
        if (kind == kLine) return false;
        break;
      default:
        break;
    }
  }
  return true;
}

}  // namespace

const EndpointParameters& parametersOf(const std::string& endpoint) {
  static const EndpointParameters kNothing;
  const auto it = table().find(endpoint);
  return it == table().end() ? kNothing : it->second;
}

std::vector<std::string> endpointsWithParameters() {
  std::vector<std::string> names;
  for (const auto& [name, rules] : table()) names.push_back(name);
  return names;
}

std::optional<Reply> applyParameterRules(const EndpointParameters& rules, Call& call) {
  std::map<std::string, std::string> kept;
  for (const ParamRule& rule : rules.params) {
    const auto it = call.args.find(rule.key);
    if (it == call.args.end()) continue;
    if (it->second.size() > rule.maxBytes) return Reply::refuse(std::string(rule.label) + "过长");
    if (!hasKind(it->second, rule.kind)) return Reply::refuse(std::string(rule.label) + "格式不正确");
    kept.insert(*it);
  }
  call.args = std::move(kept);
  if (!rules.takesFiles) call.files.clear();
  return std::nullopt;
}

}  // namespace qmv::sandbox
