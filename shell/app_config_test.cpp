#include "shell/app_config.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>

namespace qmv {
namespace {

TEST(AppConfigTest, ReadsKnownKeysAndReportsBadLines) {
  const auto path = std::filesystem::temp_directory_path() / ("qmv_conf_" + std::to_string(::getpid()));
  std::ofstream(path) << "# deployment\n"
                         "server = http://10.0.0.1:8080/qmv/app/v3/ \n"
                         "wechat_app_id=wx-test\n"
                         "no equals sign here\n"
                         "colour = blue\n"
                         "url_scheme = custom=scheme\n"
                         "max_response_bytes = 4096\n"
                         "max_response_bytes = -1\n";
  std::vector<std::string> warnings;
  const AppConfig config = AppConfig::load(path, &warnings);
  EXPECT_EQ(config.serverBaseUrl, "http://10.0.0.1:8080/qmv/app/v3/");
  EXPECT_EQ(config.wechatAppId, "wx-test");
  EXPECT_EQ(config.urlScheme, "custom=scheme");  // only the first "=" splits
  EXPECT_EQ(config.maxResponseBytes, 4096u);
  ASSERT_EQ(warnings.size(), 3u);
  EXPECT_NE(warnings[0].find(":4: "), std::string::npos);
  EXPECT_NE(warnings[1].find("unknown key \"colour\""), std::string::npos);
  EXPECT_NE(warnings[2].find(":8: expected a positive byte count"), std::string::npos);
  std::filesystem::remove(path);

  const AppConfig missing = AppConfig::load(path, &warnings);
  EXPECT_TRUE(missing.serverBaseUrl.empty());
  EXPECT_EQ(missing.urlScheme, "qqqmmmvvv");
}

}  // namespace
}  // namespace qmv
