#include "platform/response_headers.h"

#include <gtest/gtest.h>

namespace qmv {
namespace {

TEST(ResponseHeadersTest, SplitsTheLinesAsReceivedWhenRead) {
  ResponseHeaders headers;
  for (const char* line : {"Content-Type:  text/html; charset=gbk \r\n", "X-Empty:\r\n", "not a field\r\n",
                           "Location: http://a.example/b?c=d:e\r\n", "Set-Cookie: a=1", "\r\n"}) {
    headers.appendLine(line);
  }
  const HeaderFields expected{{"Content-Type", "text/html; charset=gbk"},
                              {"X-Empty", ""},
                              {"Location", "http://a.example/b?c=d:e"},
                              {"Set-Cookie", "a=1"}};
  EXPECT_EQ(headers.fields(), expected);
  // A line added after a read is read too; a copy carries what was split.
  headers.appendLine("Age: 3\r\n");
  const ResponseHeaders copy = headers;
  EXPECT_EQ(copy.fields().size(), 5u);
  EXPECT_EQ(copy.fields().back(), (std::pair<std::string, std::string>{"Age", "3"}));

  headers.clear();
  EXPECT_TRUE(headers.fields().empty());
  const ResponseHeaders given(expected);
  EXPECT_EQ(given.fields(), expected);
}

}  // namespace
}  // namespace qmv
