#include "platform/linux/printing_url_opener.h"

#include <gtest/gtest.h>

#include <sstream>

namespace qmv {
namespace {

TEST(PrintingUrlOpener, PrintsUrlsWithASchemeAndRefusesOthers) {
  std::ostringstream out;
  PrintingUrlOpener opener(out);
  EXPECT_TRUE(opener.canOpenURL("baidumap://map/"));
  EXPECT_TRUE(opener.canOpenURL("tel:0539123"));
  EXPECT_FALSE(opener.canOpenURL("no scheme here"));
  EXPECT_FALSE(opener.canOpenURL(":empty"));
  EXPECT_FALSE(opener.canOpenURL("1abc:x"));
  EXPECT_TRUE(opener.openURL("tel:0539123"));
  EXPECT_FALSE(opener.openURL("plain"));
  EXPECT_EQ(out.str(), "tel:0539123\n");
}

}  // namespace
}  // namespace qmv
