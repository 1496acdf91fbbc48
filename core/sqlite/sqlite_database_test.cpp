#include "core/sqlite/sqlite_database.h"

#include <gtest/gtest.h>

#include <atomic>
#include <fstream>
#include <thread>

#include "platform/testing/temp_home.h"

namespace qmv {
namespace {

TEST(SQLiteDatabaseTest, OpenCreatesFoldersAndReportsFailures) {
  TempHome home;
  auto plain = SQLiteDatabase::atPath(home.caches() / "plain.db");
  EXPECT_EQ(plain.getDatabasePath(), home.caches() / "plain.db");
  EXPECT_TRUE(plain.openDatabase().ok());  // creates Library/Caches on the way
  EXPECT_TRUE(std::filesystem::exists(home.caches() / "plain.db"));
  EXPECT_TRUE(plain.closeDatabase().ok());
  EXPECT_TRUE(plain.closeDatabase().ok());

  auto missing = SQLiteDatabase::atPath(home.home() / "nowhere" / "gone.db", SQLiteDatabase::Mode::kReadOnly);
  const Status error = missing.openDatabase();
  ASSERT_FALSE(error.ok());
  EXPECT_EQ(error.message().rfind("The database could not be opened: ", 0), 0u) << error.message();
  EXPECT_NE(error.libraryCode(), 0);
  EXPECT_EQ(missing.getRowsForQuery("select 1").status().message(), error.message());
  EXPECT_FALSE(std::filesystem::exists(home.home() / "nowhere"));
}

TEST(SQLiteDatabaseTest, BindsByKindAndReadsRowsWithoutNulls) {
  TempHome home;
  auto db = SQLiteDatabase::atPath(home.caches() / "kinds.db");
  ASSERT_TRUE(db.doQuery("create table t (id integer primary key, s text, i integer, f real, b blob, d real)").ok());
  const auto date = std::chrono::system_clock::time_point(std::chrono::milliseconds(1700000000500));
  ASSERT_TRUE(db.doUpdateQuery(
                "insert into t (s, i, f, b, d) values (?, ?, ?, ?, ?)",
                {std::string("临沂 'x'"), std::int64_t{1} << 40, 2.5, std::vector<std::uint8_t>{0, 255, 7}, date}).ok());
  EXPECT_EQ(db.getLastInsertRowID(), 1);
  ASSERT_TRUE(db.doUpdateQuery("insert into t (s, i) values (?, ?)", {std::monostate{}, std::int64_t{-3}}).ok());
  EXPECT_EQ(db.getLastInsertRowID(), 2);

  const Json rows = db.getRowsForQuery("select * from t order by id").value();
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_EQ(rows[0]["s"], "临沂 'x'");
  EXPECT_EQ(rows[0]["i"], std::int64_t{1} << 40);
  EXPECT_TRUE(rows[0]["f"].is_number_float());
  EXPECT_EQ(rows[0]["f"], 2.5);
  EXPECT_EQ(rows[0]["b"], Json::binary({0, 255, 7}));
  EXPECT_DOUBLE_EQ(rows[0]["d"].get<double>(), 1700000000.5);
  EXPECT_EQ(rows[1], (Json{{"id", 2}, {"i", -3}}));  // NULL columns are left out

  // Too many parameters for the placeholders is a bind error, not a crash.
  EXPECT_FALSE(db.doUpdateQuery("insert into t (s) values (?)", {std::string("a"), std::string("b")}).ok());

  // NULLs as null and blobs as their bytes, for readers that want every column.
  const Json styled =
      db.getRowsForQuery("select s, b from t order by id", {}, RowStyle{.nullsAsNull = true, .blobsAsText = true})
          .value();
  EXPECT_EQ(styled[0]["b"], std::string("\0\xff\x07", 3));
  EXPECT_EQ(styled[1], (Json{{"s", nullptr}, {"b", nullptr}}));
}

TEST(SQLiteDatabaseTest, FailuresCarrySqliteMessageAndCode) {
  TempHome home;
  auto db = SQLiteDatabase::atPath(home.caches() / "errors.db");
  const Status error = db.doQuery("selec nonsense");
  ASSERT_FALSE(error.ok());
  EXPECT_NE(error.message().find("syntax error"), std::string::npos) << error.message();
  EXPECT_EQ(error.libraryCode(), 1);  // SQLITE_ERROR
  const auto missing = db.getRowsForQuery("select * from no_such_table");
  ASSERT_FALSE(missing.ok());
  EXPECT_NE(missing.status().message().find("no such table"), std::string::npos);
  EXPECT_FALSE(db.doQuery("").ok());

  const Status made = SQLiteDatabase::createDBErrorWithDescription("boom", 19);
  EXPECT_EQ(made.message(), "boom");
  EXPECT_EQ(made.libraryCode(), 19);
}

TEST(SQLiteDatabaseTest, BatchIsAllOrNothingAndFlagsWriting) {
  TempHome home;
  auto db = SQLiteDatabase::atPath(home.caches() / "batch.db");
  ASSERT_TRUE(db.doQuery("create table n (v integer unique)").ok());
  EXPECT_FALSE(
      db.runInTransaction({"insert into n values (1)", "insert into n values (2)", "insert into n values (1)"}).ok());
  EXPECT_EQ(db.getRowsForQuery("select count(*) as c from n").value()[0]["c"], 0);

  std::vector<BoundStatement> inserts;
  for (int i = 0; i < 40000; ++i) inserts.push_back({"insert into n values (?)", {std::int64_t{i}}});
  std::atomic<bool> done{false};
  std::atomic<bool> sawWriting{false};
  std::thread watcher([&] {
    while (!done) {
      if (db.isWriting()) sawWriting = true;
    }
  });
  EXPECT_TRUE(db.runInTransaction(inserts).ok());
  done = true;
  watcher.join();
  EXPECT_TRUE(sawWriting);
  EXPECT_FALSE(db.isWriting());
  EXPECT_EQ(db.getRowsForQuery("select count(*) as c from n").value()[0]["c"], 40000);
}

// A held transaction keeps its connection for several statements and undoes all of them
// when its body fails; bound values go in verbatim; a damaged file is told apart.
TEST(SQLiteDatabaseTest, HeldTransactionsBoundBatchesAndCorruption) {
  TempHome home;
  auto db = SQLiteDatabase::atPath(home.caches() / "held.db");
  ASSERT_TRUE(db.executeScript("PRAGMA journal_mode=WAL; create table p (name text unique, n integer)").ok());
  ASSERT_TRUE(db.runInTransaction({{"insert into p values (?1, ?2)", {std::string("O'Hare\"; --"), std::int64_t{1}}},
                                   {"insert into p values (?1, ?2)", {std::string("b"), std::int64_t{2}}}})
                  .ok());
  EXPECT_EQ(db.getRowsForQuery("select n from p where name = ?", {std::string("O'Hare\"; --")}).value(),
            Json::parse(R"([{"n":1}])"));

  const Status refused = db.transaction(SQLiteDatabase::TransactionKind::kImmediate, [&] {
    EXPECT_TRUE(db.doUpdateQuery("update p set n = n + 10", {}).ok());
    EXPECT_EQ(db.changes(), 2);
    EXPECT_TRUE(db.doQuery("delete from p where name = 'b'").ok());  // does not close the held connection
    // A nested call joins; its failure fails the whole.
    return db.transaction(SQLiteDatabase::TransactionKind::kDeferred,
                          [&] { return db.doUpdateQuery("insert into p values (?, 3)", {std::string("b")}); })
                   .ok()
               ? db.doUpdateQuery("insert into p values (?, 4)", {std::string("O'Hare\"; --")})
               : Status::ioError("the nested insert failed");
  });
  EXPECT_FALSE(refused.ok());
  EXPECT_NE(refused.message().find("UNIQUE"), std::string::npos) << refused.message();
  EXPECT_EQ(db.getRowsForQuery("select sum(n) as s, count(*) as c from p").value(), Json::parse(R"([{"s":3,"c":2}])"));

  EXPECT_TRUE(db.transaction(SQLiteDatabase::TransactionKind::kImmediate, [&] {
                  return db.doUpdateQuery("delete from p where n = ?", {std::int64_t{2}});
                }).ok());
  EXPECT_EQ(db.getRowsForQuery("select count(*) as c from p").value()[0]["c"], 1);
  EXPECT_TRUE(db.checkpoint().ok());
  EXPECT_TRUE(db.closeDatabase().ok());

  const auto junk = home.caches() / "junk.db";
  {
    std::ofstream out(junk, std::ios::binary);
    out << std::string(4096, 'x');
  }
  auto damaged = SQLiteDatabase::atPath(junk);
  const auto read = damaged.getRowsForQuery("select * from sqlite_master");
  ASSERT_FALSE(read.ok());
  EXPECT_TRUE(read.status().isCorruption()) << read.status().toString();
  EXPECT_TRUE(damaged.executeScript("create table t (x)").isCorruption());
}

TEST(SQLiteDatabaseTest, DumpListsTablesAndRows) {
  TempHome home;
  auto db = SQLiteDatabase::atPath(home.caches() / "dump.db");
  ASSERT_TRUE(db.runInTransaction({"create table a (x integer, y text)", "insert into a values (1, 'one')",
                                 "insert into a values (2, null)", "insert into a values (null, 'it''s')",
                                 "create table b (z real)"}).ok());
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
  ASSERT_TRUE(db.runInTransaction({"create table v (n integer)", "insert into v values (1)"}).ok());
  ASSERT_EQ(db.getRowsForQuery("select n from v")->size(), 1u);  // leaves the old handle open

  const auto failed = db.replaceWith([&](SQLiteDatabase& fresh) {
    EXPECT_TRUE(db.isWriting());
    EXPECT_EQ(db.getRowsForQuery("select n from v").value()[0]["n"], 1);  // readers still see the old file
    fresh.doQuery("create table v (n integer)");
    return fresh.doQuery("insert into nowhere values (1)");
  });
  EXPECT_FALSE(failed.ok());
  EXPECT_FALSE(db.isWriting());
  EXPECT_EQ(db.getRowsForQuery("select n from v").value()[0]["n"], 1);
  EXPECT_FALSE(std::filesystem::exists(home.caches() / "swap.db.rebuild"));

  EXPECT_TRUE(db.replaceWith([](SQLiteDatabase& fresh) {
    return fresh.runInTransaction(
        {"create table v (n integer)", "insert into v values (2)", "insert into v values (3)"});
  }).ok());
  EXPECT_EQ(db.getRowsForQuery("select sum(n) as s from v").value()[0]["s"], 5);
}

// A kept statement must answer for each call's own values, survive the swap of the file
// under it, and an immutable database (in a directory whose name needs URI escaping) reads
// but never writes.
TEST(SQLiteDatabaseTest, KeptStatementsAndImmutableFiles) {
  TempHome home;
  const auto dir = home.home() / "a?b #50%";
  std::filesystem::create_directories(dir);
  auto db = SQLiteDatabase::atPath(dir / "kept.db");
  ASSERT_TRUE(db.runInTransaction({"create table k (n integer, s text)", "insert into k values (1, 'one')",
                                 "insert into k values (2, 'two')"}).ok());
  const char* byNumber = "select s from k where n = ?";
  EXPECT_EQ(db.getRowsForQuery(byNumber, {std::int64_t{2}}).value(), Json::parse(R"([{"s":"two"}])"));
  EXPECT_EQ(db.getRowsForQuery(byNumber, {std::int64_t{1}}).value(), Json::parse(R"([{"s":"one"}])"));
  EXPECT_EQ(db.getRowsForQuery(byNumber, {}).value(), Json::array());  // unbound reads as NULL
  EXPECT_FALSE(db.getRowsForQuery(byNumber, {std::int64_t{1}, std::int64_t{2}}).ok());
  EXPECT_FALSE(db.getRowsForQuery("select nonsense from", {}).ok());
  ASSERT_TRUE(db.replaceWith([](SQLiteDatabase& fresh) {
    return fresh.runInTransaction({"create table k (n integer, s text)", "insert into k values (1, 'uno')"});
  }).ok());
  EXPECT_EQ(db.getRowsForQuery(byNumber, {std::int64_t{1}}).value(), Json::parse(R"([{"s":"uno"}])"));
  EXPECT_TRUE(db.closeDatabase().ok());  // kept statements do not hold the handle open

  auto shipped = SQLiteDatabase::atPath(dir / "kept.db", SQLiteDatabase::Mode::kImmutable);
  EXPECT_EQ(shipped.getRowsForQuery(byNumber, {std::int64_t{1}}).value(), Json::parse(R"([{"s":"uno"}])"));
  EXPECT_FALSE(shipped.doUpdateQuery("insert into k values (?, ?)", {std::int64_t{3}, std::string("x")}).ok());
  EXPECT_FALSE(SQLiteDatabase::atPath(dir / "missing.db", SQLiteDatabase::Mode::kImmutable).openDatabase().ok());
  EXPECT_FALSE(std::filesystem::exists(dir / "missing.db"));
}

TEST(SQLiteDatabaseTest, WriterAndReadersShareOneObjectSafely) {
  TempHome home;
  auto db = SQLiteDatabase::atPath(home.caches() / "shared.db");
  ASSERT_TRUE(db.doQuery("create table w (n integer)").ok());
  std::thread writer([&] {
    for (int i = 0; i < 40; ++i) db.doUpdateQuery("insert into w values (?)", {std::int64_t{i}});
  });
  std::size_t last = 0;
  bool monotonic = true;
  for (int i = 0; i < 200; ++i) {
    const std::size_t count = db.getRowsForQuery("select n from w")->size();
    monotonic = monotonic && count >= last;
    last = count;
  }
  writer.join();
  EXPECT_TRUE(monotonic);
  EXPECT_EQ(db.getRowsForQuery("select n from w")->size(), 40u);

  SQLiteDatabase moved = std::move(db);
  EXPECT_EQ(moved.getRowsForQuery("select count(*) as c from w").value()[0]["c"], 40);
}

// An image of a WAL file comes back in another connection's memory, whatever its
// statements had kept (there t sits on the page of the image's u, under the same schema
// cookie); later writes never reach either file, and only writes move the data version.
TEST(SQLiteDatabaseTest, ImagesRoundTripIntoMemory) {
  TempHome home;
  auto file = SQLiteDatabase::atPath(home.caches() / "image.db");
  ASSERT_TRUE(file.executeScript("PRAGMA journal_mode=WAL; CREATE TABLE t(v TEXT); CREATE TABLE u(v TEXT);"
                                 "INSERT INTO t VALUES('kept')")
                  .ok());
  const Result<std::string> image = file.serialize();
  ASSERT_TRUE(image.ok()) << image.status().toString();

  auto memory = SQLiteDatabase::inMemory();
  EXPECT_EQ(memory.getDatabasePath(), ":memory:");
  ASSERT_TRUE(memory.executeScript("CREATE TABLE u(v TEXT); CREATE TABLE t(v TEXT)").ok());
  const auto count = [&memory] {
    return memory.getRowsForQuery("SELECT count(*) AS n FROM t", {}).value()[0]["n"].get<int>();
  };
  EXPECT_EQ(count(), 0);  // the kept statement was prepared on the old schema
  for (int round = 0; round < 2; ++round) {
    ASSERT_TRUE(memory.deserialize(*image).ok());
    EXPECT_EQ(count(), 1);
    const std::uint32_t before = memory.dataVersion();
    ASSERT_TRUE(memory.transaction(SQLiteDatabase::TransactionKind::kImmediate, [&] {
      memory.doUpdateQuery("INSERT INTO t VALUES('rolled back')", {});
      return Status::notFound("undone");
    }).isNotFound());
    EXPECT_EQ(memory.dataVersion(), before);
    ASSERT_TRUE(memory.doUpdateQuery("INSERT INTO t VALUES(?)", {std::string("dropped")}).ok());
    EXPECT_EQ(count(), 2);
    EXPECT_NE(memory.dataVersion(), before);
  }
  ASSERT_TRUE(file.deserialize(*image).ok());
  ASSERT_TRUE(file.doUpdateQuery("INSERT INTO t VALUES('memory only')", {}).ok());
  ASSERT_TRUE(file.closeDatabase().ok());
  EXPECT_EQ(file.getRowsForQuery("SELECT count(*) AS n FROM t").value()[0]["n"], 1);

  const Status restored = memory.deserialize("not a database");
  EXPECT_TRUE(restored.isCorruption() || memory.getRowsForQuery("SELECT * FROM t").status().isCorruption());

  // An exception out of a held transaction rolls it back and leaves the connection usable.
  EXPECT_THROW(file.transaction(SQLiteDatabase::TransactionKind::kImmediate,
                                [&]() -> Status {
                                  file.doUpdateQuery("INSERT INTO t VALUES('thrown')", {});
                                  throw std::runtime_error("bug");
                                }),
               std::runtime_error);
  EXPECT_TRUE(file.transaction(SQLiteDatabase::TransactionKind::kDeferred, [] { return Status(); }).ok());
  EXPECT_EQ(file.getRowsForQuery("SELECT count(*) AS n FROM t").value()[0]["n"], 1);
}

}  // namespace
}  // namespace qmv
