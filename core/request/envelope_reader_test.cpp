#include "core/request/envelope_reader.h"

#include <gtest/gtest.h>

#include "core/common/json.h"

namespace qmv {
namespace {

// Whatever the one pass decides must be what the parsed document says; it decides the
// plain answers, and leaves to the full reader what it cannot read plainly or what the
// full reader refuses.
TEST(EnvelopeReaderTest, DecidesPlainAnswersAsTheParsedDocumentAndLeavesTheRest) {
  const std::string deep = std::string(300, '[') + std::string(300, ']');
  const struct {
    std::string text;
    bool decided;
  } cases[] = {
      {R"({"success":"0","message":"","data":{"dataList":[{"id":110100,"name":"北京市"}],"ver":"3"}})", true},
      {" {\"data\" : [1, -2.5, 0, true, false, null, {}, [], \"a\\u4e2d\\n\\\"\"],\r\n\t\"success\":\"1\",\"message\":\"不对\"} ",
       true},
      {R"({"success":"2","success":"0","message":"a","message":"b","x":{"success":"9"}})", true},
      {R"({"data":{}})", true},
      {"{}", true},
      {"{\"data\":" + deep + ",\"success\":\"0\"}", false},
      {R"({"success":"0",})", false},
      {R"({"success":"0"} x)", false},
      {R"({"success":"0")", false},
      {R"([{"success":"0"}])", false},
      {R"("success")", false},
      {"", false},
      {R"({"success":0,"message":"m"})", false},
      {R"({"success":"0","message":{"a":1}})", false},
      {R"({"success":"1","message":"\u4e2d"})", false},
      {R"({"succ\u0065ss":"1"})", false},
      {R"({"success":"0","data":1e400})", false},
      {R"({"success":"0","data":[01]})", false},
      {R"({"success":"0","data":[1.]})", false},
      {R"({"success":"0","data":[-]})", false},
      {R"({"success":"0","data":tru})", false},
      {R"({"success":"0","data":"\ud800"})", false},
      {R"({"success":"0","data":"\x"})", false},
      {"{\"success\":\"0\",\"data\":\"a\x01\"}", false},
      {"{\"success\":\"0\",\"message\":\"\xff\"}", false},
      {"\xef\xbb\xbf{\"success\":\"0\"}", false},
  };
  for (const auto& [text, decided] : cases) {
    const std::optional<Envelope> scanned = scanEnvelope(text);
    EXPECT_EQ(scanned.has_value(), decided) << text;
    if (scanned) {
      EXPECT_EQ(*scanned, envelopeIn(parseJson(text))) << text;
    }
  }
}

}  // namespace
}  // namespace qmv
