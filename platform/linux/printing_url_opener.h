#pragma once
// URL opener of the command line: a terminal has no other applications to hand a URL
// to, so it prints the URL on its own line for the member (or a script) to follow.
// Every URL with a scheme counts as openable, so the choices that need an installed
// application are offered.
#include <mutex>
#include <ostream>

#include "platform/url_opener.h"

namespace qmv {

class PrintingUrlOpener : public UrlOpener {
 public:
  // REQUIRES: `out` outlives the opener.
  explicit PrintingUrlOpener(std::ostream& out) : out_(out) {}

  // True when `url` has a scheme ("name:" with a letter first).
  bool canOpenURL(const std::string& url) const override;
  // Prints `url` and a newline; false (nothing printed) when it has no scheme.
  bool openURL(const std::string& url) override;

 private:
  std::mutex mutex_;
  std::ostream& out_;
};

}  // namespace qmv
