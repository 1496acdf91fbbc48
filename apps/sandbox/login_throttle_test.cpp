#include "apps/sandbox/login_throttle.h"

#include <atomic>

#include "apps/sandbox/sandbox_test_support.h"

namespace qmv::sandbox::testing {
namespace {

using std::chrono::seconds;
using Clock = LoginThrottle::Clock;

TEST(LoginThrottle, BacksOffPerAccountAndPerAddressAndForgets) {
  Clock::time_point now{};
  LoginThrottle throttle([&] { return now; });
  const auto failTimes = [&](int n, const std::string& account, const std::string& address) {
    for (int i = 0; i < n; ++i) throttle.failed(account, address);
  };

  failTimes(4, "member:1", "10.0.0.1");
  EXPECT_EQ(throttle.wait("member:1", "10.0.0.1"), Clock::duration::zero());
  failTimes(1, "member:1", "10.0.0.1");
  EXPECT_EQ(throttle.wait("member:1", "10.0.0.9"), seconds(1)) << "the account waits, from any address";
  now += seconds(1);
  EXPECT_EQ(throttle.wait("member:1", "10.0.0.1"), Clock::duration::zero());
  failTimes(1, "member:1", "10.0.0.1");
  EXPECT_EQ(throttle.wait("member:1", "10.0.0.1"), seconds(2)) << "each failure past the free ones doubles the wait";
  failTimes(30, "member:1", "10.0.0.1");
  EXPECT_EQ(throttle.wait("member:1", "10.0.0.2"), LoginThrottle::kAccount.longestWait);
  throttle.succeeded("member:1");
  EXPECT_EQ(throttle.wait("member:1", "10.0.0.2"), Clock::duration::zero());
  EXPECT_EQ(throttle.wait("member:2", "10.0.0.1"), LoginThrottle::kAddress.longestWait)
      << "an address that guessed too often waits for every account, whatever one of them says";

  // An address spreading its guesses over many accounts.
  for (int i = 0; i < LoginThrottle::kAddress.freeFailures; ++i)
    throttle.failed("name:" + std::to_string(i), "10.0.0.3");
  EXPECT_EQ(throttle.wait("member:3", "10.0.0.3"), seconds(1));
  EXPECT_EQ(throttle.wait("member:3", "10.0.0.4"), Clock::duration::zero());

  now += LoginThrottle::kForgetAfter;
  EXPECT_EQ(throttle.wait("member:2", "10.0.0.1"), Clock::duration::zero());
  failTimes(1, "member:1", "10.0.0.1");
  EXPECT_EQ(throttle.wait("member:1", "10.0.0.1"), Clock::duration::zero()) << "old failures are forgotten";
}

// A burst of guesses against one account: only the free ones are checked, even the right
// password waits its turn, and it signs in once the wait is over.
TEST(SandboxLogin, WrongPasswordsAreThrottled) {
  const auto home = freshHome();
  std::atomic<int64_t> offset{0};
  SandboxOptions options{home};
  options.clock = [&] { return std::chrono::steady_clock::time_point{} + seconds(offset.load()); };
  SandboxServer server(options);
  ASSERT_TRUE(server.start().ok());
  ApiClient api(server.port());
  int checked = 0, throttled = 0;
  for (int i = 0; i < 300; ++i) {
    const std::string message =
        api.get("getUserLogin", {{"userName", kDemoPhone}, {"userPassword", StringUtil::getmd5WithString("guess" + std::to_string(i))}})
            .value("message", "");
    checked += message == "用户名或密码错误";
    throttled += message == "密码错误次数过多，请稍后再试";
  }
  EXPECT_EQ(checked, LoginThrottle::kAccount.freeFailures);
  EXPECT_EQ(throttled, 300 - checked);
  EXPECT_EQ(api.login(), "") << "not even the right password is checked while the account waits";
  offset += 1;
  EXPECT_NE(api.login(), "");
  server.stop();
  std::filesystem::remove_all(home);
}

}  // namespace
}  // namespace qmv::sandbox::testing
