#include "apps/cli_docs/manual.h"

#include <gtest/gtest.h>

#include "apps/cli_docs/cli11_manual.h"

namespace qmv::docs {
namespace {

// A parser shaped like the programs': global options, a hidden flag, a hidden command, and a
// command with a required positional, a checked value and a flag.
struct Tool {
  CLI::App app{"tool"};
  std::string home, url, mode;
  int port = 0;
  bool flag = false, hidden = false;
  Tool() {
    app.add_option("--home", home, "home directory");
    app.add_flag("--man", hidden, "hidden")->group("");
    CLI::App* open = app.add_subcommand("open", ".starts with a dot \\ and a backslash");
    open->add_option("URL", url, "the URL")->required();
    open->add_option("--mode", mode, "mode")->check(CLI::IsMember({"a", "b"}));
    open->add_option("-p,--port", port, "port")->check(CLI::Range(0, 65535))->type_name("PORT");
    open->add_flag("--quiet", flag, "no output");
    app.add_subcommand("secret", "hidden command")->group("");
  }
};

TEST(ManualTest, PageAndCompletionFollowTheParser) {
  Tool tool;
  ManPage page;
  page.version = "tool 1.0";
  page.summary = "a tool";
  page.description = {"First.", "Second."};
  page.program = describeCli(tool.app, "tool");
  page.exitStatus = {{"2", "usage"}};

  ASSERT_EQ(page.program.commands.size(), 1u);  // the hidden command is left out
  const ManCommand& open = page.program.commands[0];
  ASSERT_EQ(open.options.size(), 4u);  // URL, --mode, --port, --quiet: --help is the program's
  EXPECT_TRUE(open.options[0].positional);
  EXPECT_TRUE(open.options[0].required);
  EXPECT_EQ(open.options[1].value, "{a,b}");
  EXPECT_EQ(open.options[2].names, (std::vector<std::string>{"-p", "--port"}));
  EXPECT_EQ(open.options[2].value, "PORT");
  EXPECT_TRUE(open.options[3].value.empty());
  for (const ManOption& option : page.program.options) EXPECT_NE(option.names.back(), "--man");

  const std::string roff = renderManPage(page);
  EXPECT_NE(roff.find(".TH TOOL 1 \"\" \"tool 1.0\""), std::string::npos);
  EXPECT_NE(roff.find(".SS \"tool open [OPTIONS] URL\"\n\\&.starts with a dot \\e and a backslash\n"), std::string::npos);
  EXPECT_NE(roff.find(".SH SYNOPSIS\n.B tool\n[OPTIONS] \\fICOMMAND\\fR"), std::string::npos) << roff;
  EXPECT_NE(roff.find("\\fB\\-p, \\-\\-port\\fR \\fIPORT\\fR"), std::string::npos);
  EXPECT_NE(roff.find("First.\n.PP\nSecond.\n"), std::string::npos);
  EXPECT_NE(roff.find(".SH EXIT STATUS\n.TP\n.B 2\nusage\n"), std::string::npos);
  EXPECT_EQ(roff.find(".SH FILES"), std::string::npos);  // nothing to say, no section
  EXPECT_EQ(roff.find("secret"), std::string::npos);

  // The command's words carry the global options too (they may follow the command); only
  // options that take a value are followed by a file name.
  const std::string bash = renderBashCompletion(page.program);
  EXPECT_NE(bash.find("    \"\") echo \"open -h --help --home\" ;;"), std::string::npos) << bash;
  EXPECT_NE(bash.find("    \"open\") echo \"-h --help --home --mode -p --port --quiet\" ;;"), std::string::npos) << bash;
  EXPECT_NE(bash.find("valued=\" --home --mode --port -p \""), std::string::npos) << bash;
  EXPECT_NE(bash.find("complete -F _tool tool\n"), std::string::npos);
}

}  // namespace
}  // namespace qmv::docs
