#include "core/request/network_util.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "qmv/version.h"

namespace qmv {
namespace {

TEST(NetworkUtilTest, CheckJsonWalksNestedObjectsAndArrays) {
  const Json answer = parseJson(R"({"id":"7","price":12.5,"open":true,"tags":["a","b"],
    "shop":{"name":"x","geo":{"lat":1,"lon":2},"staff":[{"n":"p"},{"n":null}]},"note":null})");
  const Json validator = parseJson(R"({"id":"","price":0,"open":true,"tags":[""],
    "shop":{"name":"","geo":{"lat":0},"staff":[{"n":""}]},"note":""})");
  EXPECT_TRUE(NetworkUtil::checkJson(answer, validator));
  // Only the validator's keys are required; empty templates accept anything of their kind.
  EXPECT_TRUE(NetworkUtil::checkJson(answer, Json::object()));
  EXPECT_TRUE(NetworkUtil::checkJson(answer, parseJson(R"({"tags":[]})")));

  for (const char* wrong :
       {R"({"id":0})", R"({"open":0})", R"({"missing":""})", R"({"tags":[0]})", R"({"shop":{"geo":{"lat":""}}})",
        R"({"shop":{"staff":[{"n":0}]}})", R"({"shop":""})", R"({"tags":{}})"}) {
    EXPECT_FALSE(NetworkUtil::checkJson(answer, parseJson(wrong))) << wrong;
  }
  EXPECT_TRUE(NetworkUtil::checkJson(parseJson(R"([[1,2],[3]])"), parseJson("[[0]]")));
  EXPECT_FALSE(NetworkUtil::checkJson(parseJson(R"([[1,"2"]])"), parseJson("[[0]]")));
  EXPECT_FALSE(NetworkUtil::checkJson(parseJson("[1]"), Json::object()));
  EXPECT_TRUE(NetworkUtil::checkJson("text", ""));
  EXPECT_FALSE(NetworkUtil::checkJson(Json(), ""));  // null passes only inside an object
}

TEST(NetworkUtilTest, QueryStringsAndPercentEncoding) {
  EXPECT_EQ(NetworkUtil::urlEncode(":/?#[]@!$&'()*+,;="), "%3A%2F%3F%23%5B%5D%40%21%24%26%27%28%29%2A%2B%2C%3B%3D");
  EXPECT_EQ(NetworkUtil::urlEncode("a.b-c_d~e f%"), "a.b-c_d~e%20f%25");
  EXPECT_EQ(NetworkUtil::urlEncode("城"), "%E5%9F%8E");

  const Json args = {{"z", "x y"}, {"a", 1}, {"flag", true}, {"r", 2.5}};
  const std::string query = NetworkUtil::urlParametersStringFromParameters(args);
  EXPECT_EQ(query, "&z=x%20y&a=1&flag=1&r=2.5");
  EXPECT_EQ(NetworkUtil::urlParametersStringFromParameters(Json()), "");
  EXPECT_EQ(NetworkUtil::urlStringWithOriginUrlString("http://h/p", query), "http://h/p?z=x%20y&a=1&flag=1&r=2.5");
  EXPECT_EQ(NetworkUtil::urlStringWithOriginUrlString("http://h/p?id=1", "&a=x%20y"), "http://h/p?id=1&a=x%20y");
  EXPECT_EQ(NetworkUtil::urlStringWithOriginUrlString("http://h/p", ""), "http://h/p");
}

TEST(NetworkUtilTest, Md5VersionAndBackupTag) {
  // RFC 1321 test vectors.
  EXPECT_EQ(NetworkUtil::md5StringFromString("abc"), "900150983cd24fb0d6963f7d28e17f72");
  EXPECT_EQ(NetworkUtil::md5StringFromString(std::string("abc\0def", 7)), "900150983cd24fb0d6963f7d28e17f72");
  EXPECT_EQ(NetworkUtil::md5StringFromString(""), std::nullopt);

  EXPECT_EQ(NetworkUtil::appVersionString(), QMV_VERSION_STRING);
  NetworkUtil::overrideAppVersionString("9.9");
  EXPECT_EQ(NetworkUtil::appVersionString(), "9.9");
  NetworkUtil::overrideAppVersionString(std::nullopt);
  EXPECT_EQ(NetworkUtil::appVersionString(), QMV_VERSION_STRING);

  const auto dir = std::filesystem::temp_directory_path() / "qmv_util_tag";
  std::filesystem::remove_all(dir);
  EXPECT_FALSE(NetworkUtil::addDoNotBackupAttribute(dir.string()));
  std::filesystem::create_directories(dir);
  EXPECT_TRUE(NetworkUtil::addDoNotBackupAttribute(dir.string()));
  std::ifstream tag(dir / "CACHEDIR.TAG");
  std::string first;
  std::getline(tag, first);
  EXPECT_EQ(first, "Signature: 8a477f597d28d172789f06886806bc55");
  std::filesystem::remove_all(dir);
}

}  // namespace
}  // namespace qmv
