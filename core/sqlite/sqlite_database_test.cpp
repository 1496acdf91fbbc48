#include "core/sqlite/sqlite_database.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "platform/testing/temp_home.h"

namespace qmv {
namespace {

TEST(SQLiteDatabaseTest, OpenCreatesFoldersAndReportsFailures) {
  TempHome home;
  auto plain = SQLiteDatabase::atPath(home.caches() / "plain.db");
  EXPECT_EQ(plain.getDatabasePath(), home.caches() / "plain.db");
  EXPECT_EQ(plain.openDatabase(), std::nullopt);  // creates Library/Caches on the way
  EXPECT_TRUE(std::filesystem::exists(home.caches() / "plain.db"));
  EXPECT_EQ(plain.closeDatabase(), std::nullopt);
  EXPECT_EQ(plain.closeDatabase(), std::nullopt);

  auto missing = SQLiteDatabase::atPath(home.home() / "nowhere" / "gone.db", SQLiteDatabase::Mode::kReadOnly);
  const auto error = missing.openDatabase();
  ASSERT_TRUE(error);
  EXPECT_EQ(error->domain, "SQLiteDatabase");
  EXPECT_EQ(error->description.rfind("The database could not be opened: ", 0), 0u) << error->description;
  EXPECT_NE(error->code, 0);
  EXPECT_EQ(missing.getRowsForQuery("select 1"), Json::array());
  EXPECT_FALSE(std::filesystem::exists(home.home() / "nowhere"));
}

TEST(SQLiteDatabaseTest, BindsByKindAndReadsRowsWithoutNulls) {
  TempHome home;
  auto db = SQLiteDatabase::atPath(home.caches() / "kinds.db");
  ASSERT_EQ(db.doQuery("create table t (id integer primary key, s text, i integer, f real, b blob, d real)"),
            std::nullopt);
  const auto date = std::chrono::system_clock::time_point(std::chrono::milliseconds(1700000000500));
  ASSERT_EQ(db.doUpdateQuery(
                "insert into t (s, i, f, b, d) values (?, ?, ?, ?, ?)",
                {std::string("临沂 'x'"), std::int64_t{1} << 40, 2.5, std::vector<std::uint8_t>{0, 255, 7}, date}),
            std::nullopt);
  EXPECT_EQ(db.getLastInsertRowID(), 1);
  ASSERT_EQ(db.doUpdateQuery("insert into t (s, i) values (?, ?)", {std::monostate{}, std::int64_t{-3}}), std::nullopt);
  EXPECT_EQ(db.getLastInsertRowID(), 2);

  const Json rows = db.getRowsForQuery("select * from t order by id");
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_EQ(rows[0]["s"], "临沂 'x'");
  EXPECT_EQ(rows[0]["i"], std::int64_t{1} << 40);
  EXPECT_TRUE(rows[0]["f"].is_number_float());
  EXPECT_EQ(rows[0]["f"], 2.5);
  EXPECT_EQ(rows[0]["b"], Json::binary({0, 255, 7}));
  EXPECT_DOUBLE_EQ(rows[0]["d"].get<double>(), 1700000000.5);
  EXPECT_EQ(rows[1], (Json{{"id", 2}, {"i", -3}}));  // NULL columns are left out

  // Too many parameters for the placeholders is a bind error, not a crash.
  EXPECT_TRUE(db.doUpdateQuery("insert into t (s) values (?)", {std::string("a"), std::string("b")}));
}

TEST(SQLiteDatabaseTest, FailuresCarrySqliteMessageAndCode) {
  TempHome home;
  auto db = SQLiteDatabase::atPath(home.caches() / "errors.db");
  const auto error = db.doQuery("selec nonsense");
  ASSERT_TRUE(error);
  EXPECT_NE(error->description.find("syntax error"), std::string::npos) << error->description;
  EXPECT_EQ(error->code, 1);  // SQLITE_ERROR
  EXPECT_EQ(db.getRowsForQuery("select * from no_such_table"), Json::array());
  EXPECT_TRUE(db.doQuery(""));

  const DBError made = SQLiteDatabase::createDBErrorWithDescription("boom", 19);
  EXPECT_EQ(made.domain, "SQLiteDatabase");
  EXPECT_EQ(made.description, "boom");
  EXPECT_EQ(made.code, 19);
}

TEST(SQLiteDatabaseTest, BatchIsAllOrNothingAndFlagsWriting) {
  TempHome home;
  auto db = SQLiteDatabase::atPath(home.caches() / "batch.db");
  ASSERT_EQ(db.doQuery("create table n (v integer unique)"), std::nullopt);
  EXPECT_TRUE(
      db.runInTransaction({"insert into n values (1)", "insert into n values (2)", "insert into n values (1)"}));
  EXPECT_EQ(db.getRowsForQuery("select count(*) as c from n")[0]["c"], 0);

  std::vector<std::string> inserts;
  for (int i = 0; i < 40000; ++i) inserts.push_back("insert into n values (" + std::to_string(i) + ")");
  std::atomic<bool> done{false};
  std::atomic<bool> sawWriting{false};
  std::thread watcher([&] {
    while (!done) {
      if (db.isWriting()) sawWriting = true;
    }
  });
  EXPECT_EQ(db.runInTransaction(inserts), std::nullopt);
  done = true;
  watcher.join();
  EXPECT_TRUE(sawWriting);
  EXPECT_FALSE(db.isWriting());
  EXPECT_EQ(db.getRowsForQuery("select count(*) as c from n")[0]["c"], 40000);
}

TEST(SQLiteDatabaseTest, DumpListsTablesAndRows) {
  TempHome home;
  auto db = SQLiteDatabase::atPath(home.caches() / "dump.db");
  ASSERT_EQ(db.runInTransaction({"create table a (x integer, y text)", "insert into a values (1, 'one')",
                                 "insert into a values (2, null)", "insert into a values (null, 'it''s')",
                                 "create table b (z real)"}),
            std::nullopt);
  const std::string dump = db.getDatabaseDump();
  const std::string expectedBody =
      "; database dump.db;\n"
      "CREATE TABLE a (x integer, y text);\n"
      "insert into a (x,y) values ('1','one');\n"
      "insert into a (x,y) values ('2',null);\n"
      "insert into a (x,y) values (null,'it''s');\n"
      "CREATE TABLE b (z real);\n";
  ASSERT_GE(dump.size(), expectedBody.size());
  EXPECT_EQ(dump.substr(dump.size() - expectedBody.size()), expectedBody);
  EXPECT_EQ(dump.front(), ';');  // comment header first
}

TEST(SQLiteDatabaseTest, ReplaceSwapsOnlyCompleteDatabases) {
  TempHome home;
  auto db = SQLiteDatabase::atPath(home.caches() / "swap.db");
  ASSERT_EQ(db.runInTransaction({"create table v (n integer)", "insert into v values (1)"}), std::nullopt);
  ASSERT_EQ(db.getRowsForQuery("select n from v").size(), 1u);  // leaves the old handle open

  const auto failed = db.replaceWith([&](SQLiteDatabase& fresh) {
    EXPECT_TRUE(db.isWriting());
    EXPECT_EQ(db.getRowsForQuery("select n from v")[0]["n"], 1);  // readers still see the old file
    fresh.doQuery("create table v (n integer)");
    return fresh.doQuery("insert into nowhere values (1)");
  });
  EXPECT_TRUE(failed);
  EXPECT_FALSE(db.isWriting());
  EXPECT_EQ(db.getRowsForQuery("select n from v")[0]["n"], 1);
  EXPECT_FALSE(std::filesystem::exists(home.caches() / "swap.db.rebuild"));

  EXPECT_EQ(db.replaceWith([](SQLiteDatabase& fresh) {
    return fresh.runInTransaction(
        {"create table v (n integer)", "insert into v values (2)", "insert into v values (3)"});
  }),
            std::nullopt);
  EXPECT_EQ(db.getRowsForQuery("select sum(n) as s from v")[0]["s"], 5);
}

// A kept statement must answer for each call's own values, survive the swap of the file
// under it, and an immutable database (in a directory whose name needs URI escaping) reads
// but never writes.
TEST(SQLiteDatabaseTest, KeptStatementsAndImmutableFiles) {
  TempHome home;
  const auto dir = home.home() / "a?b #50%";
  std::filesystem::create_directories(dir);
  auto db = SQLiteDatabase::atPath(dir / "kept.db");
  ASSERT_EQ(db.runInTransaction({"create table k (n integer, s text)", "insert into k values (1, 'one')",
                                 "insert into k values (2, 'two')"}),
            std::nullopt);
  const char* byNumber = "select s from k where n = ?";
  EXPECT_EQ(db.getRowsForQuery(byNumber, {std::int64_t{2}}), Json::parse(R"([{"s":"two"}])"));
  EXPECT_EQ(db.getRowsForQuery(byNumber, {std::int64_t{1}}), Json::parse(R"([{"s":"one"}])"));
  EXPECT_EQ(db.getRowsForQuery(byNumber, {}), Json::array());  // unbound reads as NULL
  EXPECT_EQ(db.getRowsForQuery(byNumber, {std::int64_t{1}, std::int64_t{2}}), Json::array());
  EXPECT_EQ(db.getRowsForQuery("select nonsense from", {}), Json::array());
  ASSERT_EQ(db.replaceWith([](SQLiteDatabase& fresh) {
    return fresh.runInTransaction({"create table k (n integer, s text)", "insert into k values (1, 'uno')"});
  }),
            std::nullopt);
  EXPECT_EQ(db.getRowsForQuery(byNumber, {std::int64_t{1}}), Json::parse(R"([{"s":"uno"}])"));
  EXPECT_EQ(db.closeDatabase(), std::nullopt);  // kept statements do not hold the handle open

  auto shipped = SQLiteDatabase::atPath(dir / "kept.db", SQLiteDatabase::Mode::kImmutable);
  EXPECT_EQ(shipped.getRowsForQuery(byNumber, {std::int64_t{1}}), Json::parse(R"([{"s":"uno"}])"));
  EXPECT_TRUE(shipped.doUpdateQuery("insert into k values (?, ?)", {std::int64_t{3}, std::string("x")}));
  EXPECT_TRUE(SQLiteDatabase::atPath(dir / "missing.db", SQLiteDatabase::Mode::kImmutable).openDatabase());
  EXPECT_FALSE(std::filesystem::exists(dir / "missing.db"));
}

TEST(SQLiteDatabaseTest, WriterAndReadersShareOneObjectSafely) {
  TempHome home;
  auto db = SQLiteDatabase::atPath(home.caches() / "shared.db");
  ASSERT_EQ(db.doQuery("create table w (n integer)"), std::nullopt);
  std::thread writer([&] {
    for (int i = 0; i < 40; ++i) db.doUpdateQuery("insert into w values (?)", {std::int64_t{i}});
  });
  std::size_t last = 0;
  bool monotonic = true;
  for (int i = 0; i < 200; ++i) {
    const std::size_t count = db.getRowsForQuery("select n from w").size();
    monotonic = monotonic && count >= last;
    last = count;
  }
  writer.join();
  EXPECT_TRUE(monotonic);
  EXPECT_EQ(db.getRowsForQuery("select n from w").size(), 40u);

  SQLiteDatabase moved = std::move(db);
  EXPECT_EQ(moved.getRowsForQuery("select count(*) as c from w")[0]["c"], 40);
}

}  // namespace
}  // namespace qmv
