// The comments and ratings commands as separate starts of the application against the
// embedded sandbox: every store has comments, the star filters split them, and the
// member's ratings are those of his rated orders.
#include <gtest/gtest.h>

#include "core/common/json.h"
#include "platform/testing/temp_home.h"
#include "tests/cli_runner.h"

namespace qmv {
namespace {

class ReviewCommandsTest : public ::testing::Test {
 protected:
  testsupport::CliRun run(std::vector<std::string> args) { return testsupport::runQmv(home_.home(), std::move(args)); }
  Json data(std::vector<std::string> args) {
    args.insert(args.begin(), "--json");
    const auto ran = run(std::move(args));
    EXPECT_EQ(ran.status, 0) << ran.out << ran.err;
    return parseJson(ran.out).value("data", Json::object());
  }
  TempHome home_;
};

TEST_F(ReviewCommandsTest, CommentsOfEveryStarAddUpAndRatingsAreTheMembersOwn) {
  const auto all = run({"comments", "1"});
  ASSERT_EQ(all.status, 0) << all.out << all.err;
  EXPECT_TRUE(all.has("用户评论 - 全部 (")) << all.out;
  const Json first = data({"comments", "1"});
  const long total = std::stol(first["count"].get<std::string>());
  EXPECT_GT(total, 10) << "the store's comments fill more than one page";
  EXPECT_FALSE(data({"comments", "1", "--page", "2"})["comments"].empty());
  long ofEachStar = 0;
  for (int star = 1; star <= 5; ++star) {
    const Json some = data({"comments", "1", "--star", std::to_string(star), "--page", "1"});
    for (const Json& comment : some["comments"]) EXPECT_EQ(comment["star"], std::to_string(star));
    ofEachStar += std::stol(some["count"].get<std::string>());
  }
  EXPECT_EQ(ofEachStar, total);
  for (const char* store : {"2", "40"}) EXPECT_FALSE(data({"comments", store})["comments"].empty()) << store;
  EXPECT_EQ(run({"comments", "999"}).status, 1);
  EXPECT_EQ(run({"comments", "1", "--star", "6"}).status, 2);

  ASSERT_EQ(run({"login", "13800000000", "qmv123"}).status, 0);
  const auto ratings = run({"ratings"});
  ASSERT_EQ(ratings.status, 0) << ratings.out << ratings.err;
  EXPECT_TRUE(ratings.has("我的评价\n")) << ratings.out;
  EXPECT_TRUE(ratings.has("★★★★★")) << ratings.out;
  EXPECT_EQ(data({"ratings"})["ratings"].size(), 4u) << "one per rated order";
}

}  // namespace
}  // namespace qmv
