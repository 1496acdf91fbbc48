#pragma once
// Reads an HTML page the way a browser shows it, with libxml2's forgiving HTML parser:
// "document.title", the links with their targets resolved against the page (or its
// <base>), and the visible text. Malformed markup is repaired as browsers do, never
// refused.
#include <cstddef>
#include <string>
#include <string_view>

#include "platform/web_view.h"

namespace qmv {

// Pages larger than this are not read at all.
inline constexpr std::size_t kMaxHtmlPageBytes = 4 * 1024 * 1024;
// A link's text is cut after this many bytes.
inline constexpr std::size_t kMaxLinkTextBytes = 1024;

// Reads `html` fetched from `url`. `charset` is the one the server named ("" when none:
// UTF-8 unless the page itself declares another). REQUIRES: html.size() <= kMaxHtmlPageBytes.
WebPage readHtmlPage(std::string_view html, const std::string& url, const std::string& charset);

}  // namespace qmv
