#pragma once
// URL opener for tests: opens only URLs that start with a prefix the test installed
// ("tel:", "baidumap://"), and records every URL it was asked to open.
#include <string>
#include <vector>

#include "platform/url_opener.h"

namespace qmv {

class RecordingUrlOpener : public UrlOpener {
 public:
  explicit RecordingUrlOpener(std::vector<std::string> openablePrefixes = {})
      : prefixes_(std::move(openablePrefixes)) {}

  bool canOpenURL(const std::string& url) const override {
    for (const std::string& prefix : prefixes_) {
      if (url.starts_with(prefix)) return true;
    }
    return false;
  }
  bool openURL(const std::string& url) override {
    opened_.push_back(url);
    return canOpenURL(url);
  }

  void allow(const std::string& prefix) { prefixes_.push_back(prefix); }
  const std::vector<std::string>& opened() const { return opened_; }

 private:
  std::vector<std::string> prefixes_;
  std::vector<std::string> opened_;
};

}  // namespace qmv
