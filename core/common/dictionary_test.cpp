#include "core/common/dictionary.h"

#include <gtest/gtest.h>

namespace qmv {
namespace {

TEST(DictionaryTest, StrForKeyReadsEveryJsonKind) {
  const Json dict = parseJson(R"({"s":"abc","empty":"","i":42,"neg":-7,"f":3.5,"whole":3.0,
    "big":12345678901234,"null":null,"arr":[1],"obj":{"a":1},"t":true,"no":false})");
  EXPECT_EQ(strForKey(dict, "s"), "abc");
  EXPECT_EQ(strForKey(dict, "empty"), "");
  EXPECT_EQ(strForKey(dict, "i"), "42");
  EXPECT_EQ(strForKey(dict, "neg"), "-7");
  EXPECT_EQ(strForKey(dict, "f"), "3.5");
  EXPECT_EQ(strForKey(dict, "whole"), "3");
  EXPECT_EQ(strForKey(dict, "big"), "12345678901234");
  EXPECT_EQ(strForKey(dict, "null"), "");
  EXPECT_EQ(strForKey(dict, "arr"), "");
  EXPECT_EQ(strForKey(dict, "obj"), "");
  EXPECT_EQ(strForKey(dict, "t"), "1");
  EXPECT_EQ(strForKey(dict, "no"), "0");
  EXPECT_EQ(strForKey(dict, "missing"), "");
  EXPECT_EQ(strForKey(Json::array({1}), "s"), "");
  EXPECT_EQ(strForKey(parseJson("not json"), "s"), "");
  EXPECT_EQ(strForKey(parseJson(R"({"f":0.1})"), "f"), "0.1");
}

TEST(DictionaryTest, NumForKeyOnlyGivesNumbers) {
  const Json dict = parseJson(R"({"i":1,"f":2.5,"s":"3","null":null,"t":true,"no":false})");
  EXPECT_EQ(numForKey(dict, "t"), Json(1));
  EXPECT_EQ(numForKey(dict, "no"), Json(0));
  EXPECT_EQ(numForKey(dict, "i"), Json(1));
  EXPECT_EQ(numForKey(dict, "f"), Json(2.5));
  EXPECT_FALSE(numForKey(dict, "s"));
  EXPECT_FALSE(numForKey(dict, "null"));
  EXPECT_FALSE(numForKey(dict, "missing"));
}

TEST(DictionaryTest, SetCustomStringDropsUnusableValuesAndKeepsOrder) {
  Json dict;
  setCustomString(dict, "", "empty");
  setCustomString(dict, Json(nullptr), "null");
  setCustomString(dict, static_cast<const char*>(nullptr), "nullptr");
  EXPECT_TRUE(dict.is_null() || dict.empty());
  setCustomString(dict, "z", "zkey");
  setCustomString(dict, " ", "blank");
  setCustomString(dict, "a", "akey");
  setCustomString(dict, "", "zkey");  // an earlier value stays
  EXPECT_EQ(dict.dump(), R"({"zkey":"z","blank":" ","akey":"a"})");
}

}  // namespace
}  // namespace qmv
