#include "core/common/result.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace qmv {
namespace {

Result<std::vector<int>> digitsOf(const std::string& text) {
  std::vector<int> digits;
  for (char c : text) {
    if (c < '0' || c > '9') return Status::invalidArgument("not a digit: " + std::string(1, c));
    digits.push_back(c - '0');
  }
  return digits;
}

TEST(StatusTest, KindsMessagesCodesAndResults) {
  EXPECT_TRUE(Status().ok());
  EXPECT_EQ(Status::OK().toString(), "OK");
  EXPECT_EQ(Status::OK().message(), "");

  const Status broken = Status::corruption("file is not a database", 26);
  EXPECT_FALSE(broken.ok());
  EXPECT_TRUE(broken.isCorruption());
  EXPECT_FALSE(broken.isBusy());
  EXPECT_EQ(broken.libraryCode(), 26);
  EXPECT_EQ(broken.toString(), "Corruption: file is not a database");
  EXPECT_TRUE(Status::busy("locked", 5).isBusy());
  EXPECT_TRUE(Status::notFound("no row").isNotFound());
  EXPECT_EQ(Status::ioError("disk full", 13).kind(), Status::Kind::kIOError);
  EXPECT_EQ(Status::unavailable("offline").toString(), "Unavailable: offline");

  auto digits = digitsOf("407");
  ASSERT_TRUE(digits.ok());
  EXPECT_TRUE(digits.status().ok());
  EXPECT_EQ(*digits, (std::vector<int>{4, 0, 7}));
  EXPECT_EQ(digits->size(), 3u);

  const auto refused = digitsOf("4x");
  EXPECT_FALSE(refused.ok());
  EXPECT_EQ(refused.status().kind(), Status::Kind::kInvalidArgument);
  EXPECT_EQ(refused.status().message(), "not a digit: x");
  EXPECT_EQ(refused.valueOr({9}), std::vector<int>{9});

  // Move-only values move out whole.
  Result<std::unique_ptr<int>> owned = std::make_unique<int>(7);
  std::unique_ptr<int> taken = std::move(owned).value();
  EXPECT_EQ(*taken, 7);
}

}  // namespace
}  // namespace qmv
