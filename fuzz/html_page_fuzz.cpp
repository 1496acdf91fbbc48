// The headless web view's reading of a server page: libxml2's HTML parser, then the title,
// the links resolved against the page or its <base>, and the visible text. Input: the
// charset the server named (may be empty) on the first line, the page's URL on the second
// (a followed link's target, so just as hostile), the page after it. Besides not crashing:
// every text comes out collapsed, a link's text within its bound.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz/fuzz_env.h"
#include "platform/linux/html_page_reader.h"

namespace qmv::fuzz {
namespace {

// No ASCII whitespace but single spaces between words.
bool isCollapsed(std::string_view text) {
  if (!text.empty() && (text.front() == ' ' || text.back() == ' ')) return false;
  return text.find_first_of("\t\n\r\f") == std::string_view::npos && text.find("  ") == std::string_view::npos;
}

std::size_t g_read = 0;

}  // namespace
}  // namespace qmv::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qmv::fuzz;
  const auto [charset, rest] = splitFirstLine(asText(data, size));
  const auto [url, html] = splitFirstLine(rest);
  const qmv::WebPage page = qmv::readHtmlPage(html, std::string(url), std::string(charset));
  if (page.url != url || !isCollapsed(page.title)) __builtin_trap();
  for (const qmv::WebLink& link : page.links) {
    if (link.text.size() > qmv::kMaxLinkTextBytes || !isCollapsed(link.text)) __builtin_trap();
    g_read += link.url.size();
  }
  // One collapsed line per block, none empty.
  std::string_view text = page.text;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    if (end == 0 || !isCollapsed(text.substr(0, end))) __builtin_trap();
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  if (!page.text.empty() && page.text.back() == '\n') __builtin_trap();
  return 0;
}
