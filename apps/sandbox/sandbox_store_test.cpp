#include "apps/sandbox/sandbox_store.h"

#include <gtest/gtest.h>

#include <thread>

#include "apps/sandbox/sandbox_test_support.h"

namespace qmv::sandbox::testing {
namespace {

class SandboxStoreTest : public ::testing::Test {
 protected:
  void SetUp() override {
    home_ = freshHome();
    std::filesystem::create_directories(home_);
    std::string error;
    db_ = SandboxStore::open(home_ / "t.db", &error);
    ASSERT_TRUE(db_) << error;
    db_->transact(true, [&] {
      db_->executeScript("CREATE TABLE t(id INTEGER PRIMARY KEY, name TEXT, amount INTEGER CHECK(amount >= 0))");
      return true;
    });
  }
  void TearDown() override {
    db_.reset();
    std::filesystem::remove_all(home_);
  }
  long long rows() {
    long long n = 0;
    db_->transact(false, [&] {
      n = db_->queryOne("SELECT COUNT(*) AS n FROM t")["n"].get<long long>();
      return true;
    });
    return n;
  }
  std::filesystem::path home_;
  std::unique_ptr<SandboxStore> db_;
};

TEST_F(SandboxStoreTest, RefusedOrFailingWorkLeavesNothingBehind) {
  EXPECT_FALSE(db_->transact(true, [&] {
    db_->execute("INSERT INTO t(name, amount) VALUES(?, ?)", {"a", 1});
    return false;
  }));
  EXPECT_EQ(rows(), 0);
  EXPECT_THROW(
      db_->transact(true,
                    [&] {
                      db_->execute("INSERT INTO t(name, amount) VALUES(?, ?)", {"b", 1});
                      db_->execute("INSERT INTO t(name, amount) VALUES(?, ?)", {"c", -1});  // violates the check
                      return true;
                    }),
      StoreError);
  EXPECT_EQ(rows(), 0);
  EXPECT_THROW(db_->transact(false, [&] { return !db_->query("SELECT nothing FROM nowhere").empty(); }), StoreError);
  ASSERT_TRUE(db_->transact(true, [&] {
    db_->execute("INSERT INTO t(name, amount) VALUES(?, ?)", {"名字", int64_t{7}});
    db_->execute("INSERT INTO t(name, amount) VALUES(?, ?)", {nullptr, 2.5});
    return true;
  }));
  db_->transact(false, [&] {
    const auto all = db_->query("SELECT name, amount FROM t ORDER BY id");
    EXPECT_EQ(all.size(), 2u);
    EXPECT_EQ(all[0]["name"], "名字");
    EXPECT_EQ(all[0]["amount"], 7);
    EXPECT_TRUE(all[1]["name"].is_null());
    EXPECT_TRUE(db_->queryOne("SELECT * FROM t WHERE id = 99").is_null());
    return true;
  });
}

TEST_F(SandboxStoreTest, OpenReportsAnUnusablePath) {
  std::string error;
  EXPECT_EQ(SandboxStore::open(home_ / "missing-dir" / "x.db", &error), nullptr);
  EXPECT_FALSE(error.empty());
}

// The image of a WAL file comes back in memory, as often as asked; from the first return
// on nothing reaches the file.
TEST_F(SandboxStoreTest, RestoredImageUndoesLaterWritesEveryTime) {
  auto insert = [&](const char* name) {
    db_->transact(true, [&] {
      db_->execute("INSERT INTO t(name, amount) VALUES(?, 1)", {name});
      return true;
    });
  };
  insert("kept");
  const std::string image = db_->image();
  for (int round = 0; round < 3; ++round) {
    insert("dropped");
    insert("dropped");
    EXPECT_EQ(rows(), 3);
    db_->restoreImage(image);
    EXPECT_EQ(rows(), 1);
  }
  insert("in memory");
  db_.reset();
  std::string error;
  db_ = SandboxStore::open(home_ / "t.db", &error);
  ASSERT_TRUE(db_) << error;
  EXPECT_EQ(rows(), 3);  // "kept" and the first round's two

  db_->restoreImage("not a database");
  EXPECT_THROW(rows(), StoreError);
}

// Two sandboxes on one home (the CLI and a standalone one) share the database file: their
// immediate transactions keep a shared balance right.
TEST(SandboxSharedHome, TwoServersOnOneHomeKeepTheBalanceConsistent) {
  const auto home = freshHome();
  SandboxServer first(SandboxOptions{home, 0, "127.0.0.1", true});
  SandboxServer second(SandboxOptions{home, 0, "127.0.0.1", true});
  ASSERT_EQ(first.start(), "");
  ASSERT_EQ(second.start(), "");
  const std::string session = ApiClient(first.port()).login();
  ASSERT_FALSE(session.empty());
  constexpr long long kFee = 2300;
  std::atomic<int> paid{0};
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([&, t] {
      ApiClient client(t % 2 ? first.port() : second.port());
      for (int i = 0; i < 8; ++i) {
        const Json reply = client.post(
            "postPayForStore",
            {{"sessionId", session}, {"totalFee", std::to_string(kFee)}, {"accountType", "3"}, {"storeId", "1"}});
        if (reply.value("success", "") == "0") ++paid;
      }
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(paid.load(), kDemoBalanceFen / kFee);
  EXPECT_EQ(ApiClient(second.port()).balance(session), kDemoBalanceFen - paid * kFee);
  first.stop();
  second.stop();
  std::filesystem::remove_all(home);
}

}  // namespace
}  // namespace qmv::sandbox::testing
