#include "core/common/inline_function.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace qmv {
namespace {

// Small and large callables (in place and on the heap) each keep what they capture alive
// exactly as long as some copy of the wrapper holds them, and are called with rvalues.
TEST(InlineFunctionTest, CopiesMovesAndReleasesWhatItHolds) {
  const auto owner = std::make_shared<int>(7);
  const std::string padding(200, 'x');
  using Fn = InlineFunction<std::string(std::string&&)>;
  for (const bool large : {false, true}) {
    {
      Fn f = large ? Fn([owner, padding](std::string&& s) { return std::move(s) + std::to_string(*owner) + padding; })
                   : Fn([owner](std::string&& s) { return std::move(s) + std::to_string(*owner); });
      const std::string tail = large ? padding : "";
      Fn copy = f;
      Fn moved = std::move(f);
      EXPECT_FALSE(f);  // NOLINT(bugprone-use-after-move): a moved-from wrapper is empty
      EXPECT_EQ(owner.use_count(), 3);
      EXPECT_EQ(copy("a"), "a7" + tail);
      EXPECT_EQ(moved("b"), "b7" + tail);
      copy = moved;
      EXPECT_EQ(owner.use_count(), 3);
      moved = nullptr;
      EXPECT_TRUE(moved == nullptr);
      EXPECT_EQ(owner.use_count(), 2);
      f = std::move(copy);
      EXPECT_EQ(f("c"), "c7" + tail);
      EXPECT_EQ(owner.use_count(), 2);
    }
    EXPECT_EQ(owner.use_count(), 1) << (large ? "large" : "small");
  }

  // Empty sources make an empty wrapper, which throws when called, as std::function does.
  Fn fromEmpty = std::function<std::string(std::string&&)>();
  std::string (*null)(std::string&&) = nullptr;
  Fn fromNull = null;
  EXPECT_FALSE(fromEmpty);
  EXPECT_FALSE(fromNull);
  EXPECT_THROW(fromEmpty("x"), std::bad_function_call);
}

}  // namespace
}  // namespace qmv
