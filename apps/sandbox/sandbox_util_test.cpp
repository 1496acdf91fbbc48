#include "apps/sandbox/sandbox_util.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace qmv::sandbox {
namespace {

TEST(SandboxRandom, AForkedServerDoesNotRepeatItsParentsSessionIds) {
  // A generator seeded once per thread hands a forked child the parent's state, and with it
  // the session ids and codes the parent is about to give out.
  ASSERT_EQ(randomHex(32).size(), 32u);  // the parent's generator is in use before the fork
  int pipe[2];
  ASSERT_EQ(::pipe(pipe), 0);
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    const std::string drawn = randomHex(32) + randomDigits(6);
    const ssize_t written = ::write(pipe[1], drawn.data(), drawn.size());
    ::_exit(written == static_cast<ssize_t>(drawn.size()) ? 0 : 1);
  }
  ::close(pipe[1]);
  const std::string mine = randomHex(32) + randomDigits(6);
  char buffer[64];
  std::string theirs;
  for (ssize_t n; (n = ::read(pipe[0], buffer, sizeof buffer)) > 0;) theirs.append(buffer, static_cast<size_t>(n));
  ::close(pipe[0]);
  int status = 0;
  ::waitpid(child, &status, 0);
  ASSERT_EQ(theirs.size(), 38u);
  EXPECT_NE(theirs.substr(0, 32), mine.substr(0, 32));
  EXPECT_EQ(mine.find_first_not_of("0123456789abcdef"), std::string::npos);
  EXPECT_EQ(mine.substr(32).find_first_not_of("0123456789"), std::string::npos);
}

}  // namespace
}  // namespace qmv::sandbox
