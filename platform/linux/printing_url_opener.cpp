#include "platform/linux/printing_url_opener.h"

#include <cctype>

namespace qmv {

bool PrintingUrlOpener::canOpenURL(const std::string& url) const {
  const auto colon = url.find(':');
  if (colon == std::string::npos || colon == 0) return false;
  if (!std::isalpha(static_cast<unsigned char>(url[0]))) return false;
  for (std::size_t i = 1; i < colon; ++i) {
    const unsigned char c = static_cast<unsigned char>(url[i]);
    if (!std::isalnum(c) && c != '+' && c != '-' && c != '.') return false;
  }
  return true;
}

bool PrintingUrlOpener::openURL(const std::string& url) {
  if (!canOpenURL(url)) return false;
  std::lock_guard lock(mutex_);
  out_ << url << '\n';
  out_.flush();
  return true;
}

}  // namespace qmv
