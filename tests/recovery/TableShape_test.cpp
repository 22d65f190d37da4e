#include "recovery/TableShape.h"

#include <gtest/gtest.h>

namespace {

TEST(TableShape, ReadsColumnsAndDeclaredTypes) {
  TableShape table;
  ASSERT_TRUE(ParseCreateTable(
      "CREATE TABLE \"my table\" ('id' INT UNSIGNED NOT NULL, [name] VARCHAR(255) DEFAULT 'a,b', `x` "
      "DECIMAL(10, 5), plain, CONSTRAINT c UNIQUE (plain))",
      &table));
  ASSERT_EQ(table.columns.size(), 4u);
  EXPECT_EQ(table.columns[0].name, "id");
  EXPECT_EQ(table.columns[0].declaredType, "INT UNSIGNED");
  EXPECT_EQ(table.columns[1].name, "name");
  EXPECT_EQ(table.columns[1].declaredType, "VARCHAR(255)");
  EXPECT_EQ(table.columns[2].declaredType, "DECIMAL(10, 5)");
  EXPECT_EQ(table.columns[3].name, "plain");
  EXPECT_EQ(table.columns[3].declaredType, "");
  EXPECT_EQ(table.rowidColumn, -1);
  EXPECT_FALSE(table.withoutRowid);
}

TEST(TableShape, FindsTheRowidAlias) {
  TableShape table;
  ASSERT_TRUE(ParseCreateTable("CREATE TABLE t (a TEXT, ROWID_ALIAS integer PRIMARY KEY AUTOINCREMENT)", &table));
  EXPECT_EQ(table.rowidColumn, 1);
  ASSERT_TRUE(ParseCreateTable("create table t (a text, b INTEGER, PRIMARY KEY (b))", &table));
  EXPECT_EQ(table.rowidColumn, 1);
  ASSERT_TRUE(ParseCreateTable("CREATE TABLE t (a INTEGER PRIMARY KEY DESC)", &table));
  EXPECT_EQ(table.rowidColumn, -1) << "DESC keeps an ordinary column";
  ASSERT_TRUE(ParseCreateTable("CREATE TABLE t (a INT PRIMARY KEY)", &table));
  EXPECT_EQ(table.rowidColumn, -1) << "only INTEGER aliases the rowid";
}

TEST(TableShape, RecognisesWithoutRowidAndRefusesOthers) {
  TableShape table;
  ASSERT_TRUE(ParseCreateTable("CREATE TABLE t (k TEXT PRIMARY KEY, v) WITHOUT ROWID", &table));
  EXPECT_TRUE(table.withoutRowid);
  TableShape other;
  EXPECT_FALSE(ParseCreateTable("CREATE VIRTUAL TABLE f USING fts4(body)", &other));
  EXPECT_FALSE(ParseCreateTable("CREATE INDEX i ON t (k)", &other));
  EXPECT_FALSE(ParseCreateTable("CREATE TABLE t (", &other));
}

TEST(TableShape, GivesSqliteAffinities) {
  EXPECT_EQ(AffinityOf("BIGINT"), Affinity::Integer);
  EXPECT_EQ(AffinityOf("VARCHAR(10)"), Affinity::Text);
  EXPECT_EQ(AffinityOf(""), Affinity::Blob);
  EXPECT_EQ(AffinityOf("DOUBLE PRECISION"), Affinity::Real);
  EXPECT_EQ(AffinityOf("DATETIME"), Affinity::Numeric);
}

}  // namespace
