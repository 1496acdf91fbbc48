#include "apps/qmv/cli_output.h"

#include <gtest/gtest.h>

#include <iostream>
#include <sstream>

#include "apps/qmv/command_line_split.h"
#include "apps/qmv/escaped_stderr.h"
#include "core/common/log.h"

namespace qmv::cli {
namespace {

TEST(CliOutputTest, TextModePrintsLinesJsonModePrintsOneDocument) {
  std::ostringstream text;
  CliOutput plain(false, text);
  plain.message("验证码发送成功");
  plain.line("balance: 500.00");
  plain.data("ignored", 1);
  plain.finish();
  EXPECT_EQ(text.str(), "验证码发送成功\nbalance: 500.00\n");

  std::ostringstream json;
  CliOutput doc(true, json);
  doc.message("注册成功");
  doc.line("not printed");
  doc.data("phone", "13800000000");
  doc.data("bad", std::string("\xff\xfe"));
  doc.finish();
  doc.finish();
  const Json parsed = parseJson(json.str());
  ASSERT_TRUE(isParsed(parsed)) << json.str();
  EXPECT_EQ(parsed["messages"], Json::array({"注册成功"}));
  EXPECT_EQ(parsed["data"]["phone"], "13800000000");
  EXPECT_EQ(json.str().find('\n'), json.str().size() - 1);  // exactly one document
}

TEST(CliOutputTest, ControlCharactersReachTheTerminalOnlyAsEscapes) {
  const std::string hostile = std::string("\x1b]0;owned\x07\x1b[2J") + '\0' + "ok\rfake\x9b\xc2\x9b" + "\x7f\t济";
  std::ostringstream text;
  CliOutput plain(false, text);
  plain.message(hostile);
  plain.line("store: " + hostile);
  EXPECT_EQ(text.str(),
            "\\x1b]0;owned\\x07\\x1b[2J\\x00ok\\x0dfake\\x9b\\u009b\\x7f\t济\n"
            "store: \\x1b]0;owned\\x07\\x1b[2J\\x00ok\\x0dfake\\x9b\\u009b\\x7f\t济\n");

  std::ostringstream json;
  CliOutput doc(true, json);
  doc.message(hostile.substr(0, 14));
  doc.finish();
  EXPECT_EQ(parseJson(json.str())["messages"][0], hostile.substr(0, 14)) << "--json keeps the text, escaped by JSON";

  // The CLI's own complaints on stderr quote outside text too; a prompt shows on a flush.
  std::ostringstream err;
  std::streambuf* const saved = std::cerr.rdbuf(err.rdbuf());
  {
    const EscapedStderr escaped;
    std::cerr << "qmv: \"" << hostile << "\" waits\n"
              << "> \x1b" << std::flush;
    EXPECT_EQ(err.str().substr(err.str().size() - 6), "> \\x1b");
    // So do the core's warnings, which go to the process's stderr.
    testing::internal::CaptureStderr();
    logWarning("http://h/x?k=\x1b[2J");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "qmv: http://h/x?k=\\x1b[2J\n");
  }
  std::cerr.rdbuf(saved);
  EXPECT_EQ(err.str(), "qmv: \"\\x1b]0;owned\\x07\\x1b[2J\\x00ok\\x0dfake\\x9b\\u009b\\x7f\t济\" waits\n> \\x1b");
}

TEST(CliOutputTest, InvisibleFormatCharactersAreEscapedVisibleTextIsNot) {
  // A holder name that a right-to-left override would show as "张三gpj.exe", and the
  // other marks that hide or reorder text; letters, accents, emoji and CJK stay.
  std::ostringstream text;
  CliOutput plain(false, text);
  plain.line("张三\u202Eexe.jpg\u202C \u2066x\u2069\u200B\u200D\uFEFF\U000E0001\u2028\u00AD é 😀 济南");
  EXPECT_EQ(text.str(),
            "张三\\u202eexe.jpg\\u202c \\u2066x\\u2069\\u200b\\u200d\\ufeff\\U000e0001\\u2028\\u00ad é 😀 济南\n");
}

TEST(CommandLineSplitTest, QuotesAndEscapes) {
  EXPECT_EQ(splitCommandLine("search  火锅 --page 2"), (std::vector<std::string>{"search", "火锅", "--page", "2"}));
  EXPECT_EQ(splitCommandLine(R"(open "qmv://pay?a=1&b=2" --source 'com.tencent.xin')"),
            (std::vector<std::string>{"open", "qmv://pay?a=1&b=2", "--source", "com.tencent.xin"}));
  EXPECT_EQ(splitCommandLine(R"(a\ b "" "x\"y")"), (std::vector<std::string>{"a b", "", "x\"y"}));
  EXPECT_EQ(splitCommandLine("   "), std::vector<std::string>{});
  EXPECT_FALSE(splitCommandLine("login \"13800000000"));
}

}  // namespace
}  // namespace qmv::cli
