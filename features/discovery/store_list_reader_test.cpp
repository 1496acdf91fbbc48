#include "features/discovery/store_list_reader.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace qmv {
namespace {

// Every field of the two records, by name, so a difference says where it is.
void expectSameOffer(const ActivityModel& a, const ActivityModel& b, const std::string& where) {
  EXPECT_EQ(a.commodityID, b.commodityID) << where;
  EXPECT_EQ(a.content, b.content) << where;
  EXPECT_EQ(a.name, b.name) << where;
  EXPECT_EQ(a.storeId, b.storeId) << where;
  EXPECT_EQ(a.storeName, b.storeName) << where;
  EXPECT_EQ(a.favorite, b.favorite) << where;
  EXPECT_EQ(a.storePhone, b.storePhone) << where;
  EXPECT_EQ(a.storeAddress, b.storeAddress) << where;
  EXPECT_EQ(a.imageURL, b.imageURL) << where;
  EXPECT_EQ(a.nowPrice, b.nowPrice) << where;
  EXPECT_EQ(a.price, b.price) << where;
  EXPECT_EQ(a.num, b.num) << where;
  EXPECT_EQ(a.firstPrice, b.firstPrice) << where;
  EXPECT_EQ(a.isFirst, b.isFirst) << where;
  EXPECT_EQ(a.hasImage, b.hasImage) << where;
  EXPECT_EQ(a.descImage, b.descImage) << where;
  EXPECT_EQ(a.date, b.date) << where;
  EXPECT_EQ(a.time, b.time) << where;
  for (const auto& [mine, theirs] : {std::pair{&a.ruleList, &b.ruleList}, std::pair{&a.packageList, &b.packageList},
                                     std::pair{&a.remarkList, &b.remarkList}}) {
    ASSERT_EQ(mine->has_value(), theirs->has_value()) << where;
    if (*mine) {
      EXPECT_EQ(mine->value().dump(), theirs->value().dump()) << where;
    }
  }
}

void expectSameStores(const std::vector<StoreInfoModel>& a, const std::vector<StoreInfoModel>& b) {
  ASSERT_EQ(a.size(), b.size());
  for (std::size_t i = 0; i < a.size(); ++i) {
    const std::string where = "store " + std::to_string(i);
    const StoreInfoModel& x = a[i];
    const StoreInfoModel& y = b[i];
    for (const auto& [mine, theirs] :
         {std::pair{&x.storeId, &y.storeId}, {&x.storeName, &y.storeName}, {&x.address, &y.address},
          {&x.content, &y.content}, {&x.title, &y.title}, {&x.time, &y.time}, {&x.phone, &y.phone},
          {&x.favorite, &y.favorite}, {&x.price, &y.price}, {&x.shopPrice, &y.shopPrice}, {&x.mark, &y.mark},
          {&x.star, &y.star}, {&x.num, &y.num}, {&x.starNum, &y.starNum}, {&x.isFirst, &y.isFirst}}) {
      EXPECT_EQ(*mine, *theirs) << where;
    }
    EXPECT_EQ(x.imgURLList, y.imgURLList) << where;
    EXPECT_EQ(x.longitude, y.longitude) << where;
    EXPECT_EQ(x.latitude, y.latitude) << where;
    ASSERT_EQ(x.activityList.size(), y.activityList.size()) << where;
    for (std::size_t j = 0; j < x.activityList.size(); ++j) {
      expectSameOffer(x.activityList[j], y.activityList[j], where + " offer " + std::to_string(j));
    }
  }
}

// What the search read before it read answers in place: the parsed text, its "data".
std::vector<StoreInfoModel> throughTree(const std::string& text) {
  const Json root = parseJson(text);
  return root.is_object() && root.contains("data") ? storesOfData(root["data"]) : std::vector<StoreInfoModel>{};
}

// Odd values in every place a reader looks: numbers of each kind where text belongs, true,
// null, containers, repeated keys (the last counts), lists that are no lists, elements that
// are no objects, escapes, and texts the in-place reading leaves to the parser (a "-0", a
// number past 64 bits, stray bytes).
TEST(StoreListReaderTest, AnswersReadInPlaceGiveTheRecordsOfTheParsedAnswer) {
  const std::string oddStore =
      R"({"storeId":12,"storeName":"\u6c82\u8499 \"A\"","address":null,"content":[1],"title":{"a":1},)"
      R"("time":true,"phone":-7,"favorite":false,"price":30.5,"shopPrice":1e21,"mark":4.0,"star":0.1,)"
      R"("num":18446744073709551615,"starNum":-9223372036854775808,"isFirst":"",)"
      R"("imageURL":"a||b|","coordinate":"118.3,35.1","storeId":"last",)"
      R"("commodityList":[{"commodityId":7,"name":null,"price":"88","ruleList":[{"rule":"x"}],"taocanList":7,)"
      R"("remarkList":null,"name":"n2"},"not an offer",[],{}],"coordinate":"1,2,3"})";
  const std::vector<std::string> pages = {
      R"({"success":"0","data":{"count":2,"dataList":[)" + oddStore + R"(,{"commodityList":{"a":1}},{},7,null]}})",
      R"({"data":{"dataList":[{"commodityList":[1,2]}],"dataList":[{"storeId":"2nd","coordinate":"1,2"}]}})",
      R"({"data":{"dataList":{"storeId":1}}})",
      R"({"data":[{"dataList":[]}]})",
      R"({"data":{"dataList":[{"storeId":1}]},"data":"gone"})",
      R"([{"data":{"dataList":[{"storeId":1}]}}])",
      R"({"data":{"dataList":[{"storeId":1,"price":-0}]}})",
      R"({"data":{"dataList":[{"storeId":1,"num":123456789012345678901234567890}]}})",
      "{\"data\":{\"dataList\":[{\"storeId\":\"\xff\xfe\",\"address\":\"\xe6\xb2\x82\"}]}}",
      R"({"data":{"dataList":[{"storeId":1}]})",
      "",
  };
  for (const std::string& page : pages) {
    SCOPED_TRACE(page);
    bool listRead = false;
    const std::vector<StoreInfoModel> inPlace = storesOfAnswer(page, &listRead);
    const std::vector<StoreInfoModel> parsed = throughTree(page);
    expectSameStores(inPlace, parsed);
    const Json root = parseJson(page);
    EXPECT_EQ(listRead, root.is_object() && root.contains("data") && root["data"].is_object() &&
                            root["data"].contains("dataList") && root["data"]["dataList"].is_array());
  }
  // The readings above must have had something to compare.
  const auto first = storesOfAnswer(pages[0]);
  ASSERT_EQ(first.size(), 5u);
  EXPECT_EQ(first[0].storeId, "last");
  EXPECT_EQ(first[0].activityList.size(), 4u);
  EXPECT_EQ(first[0].activityList[0].name, "n2");
  EXPECT_EQ(storesOfAnswer(pages[1]).at(0).storeId, "2nd");
  EXPECT_EQ(storesOfAnswer(pages[8]).at(0).storeId, "\uFFFD\uFFFD");
}

}  // namespace
}  // namespace qmv
