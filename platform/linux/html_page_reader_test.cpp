// What the headless web view reads from real-world markup: broken nesting, missing
// titles, odd bytes and relative links.
#include "platform/linux/html_page_reader.h"

#include <gtest/gtest.h>

namespace qmv {
namespace {

std::vector<std::string> urls(const WebPage& page) {
  std::vector<std::string> out;
  for (const auto& link : page.links) out.push_back(link.url);
  return out;
}

TEST(HtmlPageReaderTest, ReadsBrokenMarkupAsABrowserWould) {
  const WebPage page = readHtmlPage(
      "<html><head><title>  一元\n  夺宝 </title><title>second</title><script>var s = '<a href=\"x\">';</script>"
      "<body><p>段落<div>未闭合<a href=\"a.html\">链接 <b>粗</a></b>"
      "<a href=\" /x?y=1 \">X</a><a>no target</a></p></div></div></td>"
      "<a href=\"qmv://pay?productId=1&amp;series=12&acount=5\">买</a><style>p { color: red }</style>",
      "http://h.example/dir/page.html", "");
  EXPECT_EQ(page.title, "一元 夺宝") << "the first title, whitespace collapsed";
  EXPECT_EQ(urls(page), (std::vector<std::string>{"http://h.example/dir/a.html", "http://h.example/x?y=1",
                                                  "qmv://pay?productId=1&series=12&acount=5"}));
  EXPECT_EQ(page.links[0].text, "链接 粗");
  EXPECT_NE(page.text.find("段落"), std::string::npos) << page.text;
  EXPECT_NE(page.text.find("未闭合"), std::string::npos) << page.text;
  EXPECT_EQ(page.text.find("var s"), std::string::npos) << "scripts are not text";
  EXPECT_EQ(page.text.find("color"), std::string::npos) << "styles are not text";
  EXPECT_EQ(page.text.find("second"), std::string::npos) << "titles are not body text";
}

TEST(HtmlPageReaderTest, UntitledOddAndOversizedPages) {
  const WebPage untitled =
      readHtmlPage("<p>无标题</p><base href=\"http://cdn.example/s/\"><a href=\"t.html\">t</a>", "http://h/p", "");
  EXPECT_EQ(untitled.title, "");
  EXPECT_EQ(urls(untitled), std::vector<std::string>{"http://cdn.example/s/t.html"}) << "<base> wins";

  // Bytes that are not UTF-8, a charset nobody knows, a stray NUL: still read, never refused.
  static const char kOdd[] = "<title>ok</title><p>\xff\xfe\x00 bad</p><a href=\"/z\">z</a>";
  const std::string odd(kOdd, sizeof kOdd - 1);
  for (const char* charset : {"", "no-such-charset"}) {
    const WebPage page = readHtmlPage(odd, "http://h/p", charset);
    EXPECT_EQ(page.title, "ok") << charset;
    EXPECT_EQ(urls(page), std::vector<std::string>{"http://h/z"}) << charset;
  }
  const WebPage gbk = readHtmlPage("<title>\xd2\xbb\xd4\xaa</title>", "http://h/p", "GBK");
  EXPECT_EQ(gbk.title, "一元");

  const std::string huge = "<title>big</title>" + std::string(kMaxHtmlPageBytes, 'x');
  EXPECT_EQ(readHtmlPage(huge, "http://h/p", "").title, "");
  EXPECT_EQ(readHtmlPage("", "http://h/p", "").url, "http://h/p");
}

TEST(HtmlPageReaderTest, NestedLinksDoNotEachCopyTheTextBelowThem) {
  std::string html;
  for (int i = 0; i < 100; ++i) html += "<a href=\"/l\"><b>";
  std::string words;
  while (words.size() < 64 * 1024) words += "夺宝 ";
  html += words;
  const WebPage page = readHtmlPage(html, "http://h/p", "");
  ASSERT_GE(page.links.size(), 50u);
  for (const WebLink& link : page.links) {
    ASSERT_LE(link.text.size(), kMaxLinkTextBytes);
    EXPECT_EQ(words.compare(0, link.text.size(), link.text), 0) << "a prefix of the text";
    EXPECT_EQ(link.text.size() % 7, 6u) << "cut after a whole character, no space left over";
  }
  EXPECT_EQ(page.text, words.substr(0, words.size() - 1)) << "the page's own text is whole";
}

}  // namespace
}  // namespace qmv
