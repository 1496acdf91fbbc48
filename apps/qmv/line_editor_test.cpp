#include "apps/qmv/line_editor.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <iterator>

#include "platform/testing/temp_home.h"

namespace qmv::cli {
namespace {

std::string contentOf(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

TEST(LineEditorTest, HistoryKeepsLinesWithoutTheirPasswords) {
  EXPECT_EQ(historyEntry("login 13800000000 qmv123"), "login 13800000000");
  EXPECT_EQ(historyEntry("--json login 13800000000 'qmv 123'"), "--json login 13800000000");
  EXPECT_EQ(historyEntry("register --phone 13800000001 --name 小明 --password abc123 --confirm abc123 --code 1"),
            "register --phone 13800000001 --name 小明 --code 1");
  EXPECT_EQ(historyEntry("recover --phone 13800000001 --password=abc123 --confirm=abc123"),
            "recover --phone 13800000001");
  EXPECT_EQ(historyEntry("page 0 --follow 2 --phone 13800000000 --password \"a b\""),
            "page 0 --follow 2 --phone 13800000000");
  EXPECT_EQ(historyEntry("--json password old123 New456 New456"), "--json password");
  EXPECT_EQ(historyEntry("answer 旧密码1"), "answer") << "the text typed into an alert's field";
  EXPECT_EQ(historyEntry("answer 2"), "answer 2") << "a button's number is no secret";
  // A line without a secret is kept as typed; one rebuilt keeps its words apart.
  EXPECT_EQ(historyEntry("search  '火锅 店'  --page 2"), "search  '火锅 店'  --page 2");
  EXPECT_EQ(historyEntry("web 'a b\"c' --password x"), "web \"a b\\\"c\"");
  // An open quote may hide where the password ends: nothing is kept.
  EXPECT_EQ(historyEntry("login 13800000000 \"qmv123"), std::nullopt);
  EXPECT_EQ(historyEntry("  \t"), std::nullopt);
}

TEST(LineEditorTest, HistoryFileIsNeverALinkOrAFifo) {
  TempHome home;
  const auto history = home.home() / "shell_history";
  {
    LineEditor editor(history, {"login"});
    EXPECT_TRUE(editor.remember("login 13800000000 qmv123"));
    EXPECT_TRUE(editor.remember("search 火锅"));
  }
  const std::string kept = contentOf(history);
  EXPECT_NE(kept.find("login"), std::string::npos) << kept;
  EXPECT_NE(kept.find("search"), std::string::npos) << kept;
  EXPECT_EQ(kept.find("qmv123"), std::string::npos) << kept;
  struct stat status {};
  ASSERT_EQ(::stat(history.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0600u);

  // A link planted in its place: the file it points to is neither read nor written.
  const auto outside = home.home() / "someone_elses";
  std::ofstream(outside) << "precious";
  std::filesystem::remove(history);
  std::filesystem::create_symlink(outside, history);
  {
    LineEditor editor(history, {"login"});
    EXPECT_FALSE(editor.remember("search 烧烤"));
  }
  EXPECT_EQ(contentOf(outside), "precious");

  // A FIFO neither blocks the editor nor takes the history.
  std::filesystem::remove(history);
  ASSERT_EQ(::mkfifo(history.c_str(), 0600), 0);
  LineEditor editor(history, {"login"});
  EXPECT_FALSE(editor.remember("search 烧烤"));
}

}  // namespace
}  // namespace qmv::cli
