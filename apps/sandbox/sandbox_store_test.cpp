#include "apps/sandbox/sandbox_store.h"

#include <gtest/gtest.h>

#include "apps/sandbox/sandbox_test_support.h"

namespace qmv::sandbox::testing {
namespace {

class SandboxStoreTest : public ::testing::Test {
 protected:
  void SetUp() override {
    home_ = freshHome();
    std::filesystem::create_directories(home_);
    reopen();
    ASSERT_TRUE(db_->transact(true, [&] {
                      db_->executeScript("CREATE TABLE t(id INTEGER PRIMARY KEY, name TEXT, amount INTEGER CHECK(amount >= 0))");
                      return true;
                    }).ok());
  }
  void reopen() {
    auto opened = SandboxStore::open(home_ / "t.db");
    ASSERT_TRUE(opened.ok()) << opened.status().toString();
    db_ = std::move(opened).value();
  }
  void TearDown() override {
    db_.reset();
    std::filesystem::remove_all(home_);
  }
  // -1 when the store cannot be read.
  long long rows() {
    long long n = -1;
    const Result<bool> read = db_->transact(false, [&] {
      const Json row = db_->queryOne("SELECT COUNT(*) AS n FROM t");
      if (row.is_object()) n = row["n"].get<long long>();
      return true;
    });
    return read.ok() ? n : -1;
  }
  std::filesystem::path home_;
  std::unique_ptr<SandboxStore> db_;
};

// The first failing statement sticks: later ones do nothing, and the whole transaction is
// rolled back with that failure even when the work asks to commit.
TEST_F(SandboxStoreTest, RefusedOrFailingWorkLeavesNothingBehind) {
  const Result<bool> refused = db_->transact(true, [&] {
    db_->execute("INSERT INTO t(name, amount) VALUES(?, ?)", {"a", 1});
    return false;
  });
  ASSERT_TRUE(refused.ok());
  EXPECT_FALSE(*refused);
  EXPECT_EQ(rows(), 0);
  int64_t afterFailure = -1;
  bool rowsAfterFailure = true;
  const Result<bool> failed = db_->transact(true, [&] {
    db_->execute("INSERT INTO t(name, amount) VALUES(?, ?)", {"b", 1});
    db_->execute("INSERT INTO t(name, amount) VALUES(?, ?)", {"c", -1});  // violates the check
    afterFailure = db_->execute("INSERT INTO t(name, amount) VALUES(?, ?)", {"d", 1});
    rowsAfterFailure = !db_->query("SELECT 1 AS one").empty();
    return true;
  });
  ASSERT_FALSE(failed.ok());
  EXPECT_NE(failed.status().message().find("CHECK"), std::string::npos) << failed.status().toString();
  EXPECT_EQ(afterFailure, 0);
  EXPECT_FALSE(rowsAfterFailure);
  EXPECT_EQ(rows(), 0);
  EXPECT_FALSE(db_->transact(false, [&] { return !db_->query("SELECT nothing FROM nowhere").empty(); }).ok());
  ASSERT_TRUE(db_->transact(true, [&] {
                   db_->execute("INSERT INTO t(name, amount) VALUES(?, ?)", {"名字", int64_t{7}});
                   db_->execute("INSERT INTO t(name, amount) VALUES(?, ?)", {nullptr, 2.5});
                   return true;
                 }).value());
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
  const auto opened = SandboxStore::open(home_ / "missing-dir" / "x.db");
  ASSERT_FALSE(opened.ok());
  EXPECT_EQ(opened.status().message().rfind("cannot open " + (home_ / "missing-dir" / "x.db").string() + ": ", 0), 0u)
      << opened.status().message();
  EXPECT_FALSE(std::filesystem::exists(home_ / "missing-dir"));
}

// The remembered world of a WAL file comes back in memory after every write, also after a
// return that had nothing to undo; from the first return on nothing reaches the file.
TEST_F(SandboxStoreTest, ReturnsToTheRememberedWorldAfterEveryWrite) {
  auto insert = [&](const char* name, bool commit = true) {
    db_->transact(true, [&] {
      db_->execute("INSERT INTO t(name, amount) VALUES(?, 1)", {name});
      return commit;
    });
  };
  EXPECT_TRUE(db_->returnToRemembered().isNotFound());
  insert("kept");
  ASSERT_TRUE(db_->remember().ok());
  for (int round = 0; round < 3; ++round) {
    insert("dropped");
    insert("dropped");
    EXPECT_EQ(rows(), 3);
    ASSERT_TRUE(db_->returnToRemembered().ok());
    EXPECT_EQ(rows(), 1);
    insert("rolled back", false);
    ASSERT_TRUE(db_->returnToRemembered().ok());
    EXPECT_EQ(rows(), 1);
  }
  insert("in memory");
  db_.reset();
  reopen();
  EXPECT_EQ(rows(), 3);  // "kept" and the first round's two
}

// A statement failing in the middle of a request: the writes before it are rolled back and
// the answer is the server-error message, as for any failure of the store.
TEST(SandboxStoreInServe, AFailingStatementRollsTheRequestBack) {
  const auto home = freshHome();
  SandboxServer server(SandboxOptions{home, 0, "127.0.0.1", true});
  ASSERT_TRUE(server.start().ok());
  ApiClient api(server.port());
  const std::string session = api.login();
  ASSERT_FALSE(session.empty());
  const auto orders = [&] {
    return api.get("getMyPosts", {{"sessionId", session}, {"page", "1"}, {"type", "0"}})["data"]["dataList"].size();
  };
  const auto before = orders();
  {
    // Paying a store takes the balance first and counts the store's sale last.
    auto side = SandboxStore::open(home / "sandbox.db");
    ASSERT_TRUE(side.ok());
    ASSERT_TRUE((*side)->executeScript("CREATE TRIGGER sabotage BEFORE UPDATE OF sold ON stores "
                                       "BEGIN SELECT RAISE(ABORT, 'sabotaged'); END").ok());
  }
  const Json reply = api.post("postPayForStore",
                              {{"sessionId", session}, {"totalFee", "1000"}, {"accountType", "3"}, {"storeId", "1"}});
  EXPECT_EQ(reply.value("message", ""), kMsgServerError) << reply.dump();
  EXPECT_NE(reply.value("success", "0"), "0");
  EXPECT_EQ(api.balance(session), kDemoBalanceFen);
  EXPECT_EQ(orders(), before);
  server.stop();
  std::filesystem::remove_all(home);
}

}  // namespace
}  // namespace qmv::sandbox::testing
