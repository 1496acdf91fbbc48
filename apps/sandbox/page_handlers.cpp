#include "apps/sandbox/page_handlers.h"

namespace qmv::sandbox {
namespace {

struct Page {
  const char* path;
  const char* title;
  const char* body;
};

const Page kPages[] = {
    {"/static/coinone/index.html", "一元夺宝",
     "<p>一元即可参与，满员即开奖。</p>\n"
     "<ul>\n"
     "<li>iPhone 7 128G 第12期 <a href=\"qmv://pay?productId=1&series=12&acount=1\">1元夺宝</a>"
     " <a href=\"qmv://pay?productId=1&series=12&acount=5\">5元夺宝</a></li>\n"
     "<li>沂蒙山旅游双人游 第3期 <a href=\"qmv://pay?productId=2&series=3&acount=1\">1元夺宝</a></li>\n"
     "</ul>\n"},
    {"/static/lebbs/index.html", "圈子",
     "<p>吐槽 分享 炫，生活有圈子更有料！</p>\n<p><a href=\"myTopic.html\">我的帖子</a></p>\n"},
    {"/static/dial/index.html", "幸运大转盘",
     "<p>活动期间每位会员可抽奖3次，红包直接存入余额。</p>\n"
     "<p><a href=\"qmv://pay?productId=1&series=12&acount=1\">一元夺宝</a></p>\n"},
    {"/static/address/index.html", "绑定地址",
     "<form><p>收货人 <input name=\"address_name\"></p><p>电话 <input name=\"address_phone\"></p>"
     "<p>地址 <input name=\"address\"></p></form>\n"},
    {"/static/experience/index.html", "个人等级", "<p>每消费1元获得1点经验，评价订单获得10点经验。</p>\n"},
    {"/static/lebbs/myTopic.html", "我的帖子", "<p>暂无帖子。</p>\n<p><a href=\"index.html\">返回圈子</a></p>\n"},
};

std::string escaped(const std::string& text) {
  std::string out;
  for (const char c : text) {
    switch (c) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += "&quot;";
        break;
      default:
        out += c;
    }
  }
  return out;
}

std::string memberLine(const Json& member) {
  if (!member.is_object()) return "<p class=\"member\">未登录</p>\n";
  return "<p class=\"member\">会员: " + escaped(member.value("nick_name", std::string())) + " " +
         escaped(member.value("phone", std::string())) + "</p>\n";
}

constexpr const char* kRegisterPath = "/static/register/index.html";

// A code as the registration takes it: letters and digits, at most 32 of them.
bool plausibleInvite(const std::string& code) {
  if (code.empty() || code.size() > 32) return false;
  for (const char c : code) {
    if (!((c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'))) return false;
  }
  return true;
}

// The page an invitation link opens: the code, and a link the client's page host ignores.
std::string registerBody(const std::string& inviteId) {
  if (!plausibleInvite(inviteId)) return "<p>邀请码无效</p>\n";
  return "<p>邀请码: <strong>" + inviteId + "</strong></p>\n<p>下载客户端，注册时填写邀请码或扫描二维码。</p>\n" +
         "<p><a href=\"qmv://register?inviteID=" + inviteId + "\">注册账号</a></p>\n";
}

}  // namespace

std::optional<std::string> pageHtml(const std::string& path, const std::string& rootUrl, const Json& member,
                                    const std::string& inviteId) {
  if (path == kRegisterPath) {
    std::string html = "<!DOCTYPE html>\n<html lang=\"zh-CN\">\n<head>\n<meta charset=\"utf-8\">\n";
    html += "<title>注册账号</title>\n</head>\n<body>\n<h1>注册账号</h1>\n" + registerBody(inviteId);
    html += "</body>\n</html>\n";
    return html;
  }
  for (const Page& page : kPages) {
    if (path != page.path) continue;
    std::string html = "<!DOCTYPE html>\n<html lang=\"zh-CN\">\n<head>\n<meta charset=\"utf-8\">\n";
    html += "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n";
    html += std::string("<title>") + page.title + "</title>\n</head>\n<body>\n";
    html += std::string("<h1>") + page.title + "</h1>\n" + memberLine(member) + page.body;
    html += "<p><a href=\"qmv://login\">登录</a> · <a href=\"" + rootUrl +
            "/static/coinone/index.html\">一元夺宝</a></p>\n";
    html += "</body>\n</html>\n";
    return html;
  }
  return std::nullopt;
}

}  // namespace qmv::sandbox
