#include <gtest/gtest.h>
#include <sqlite3.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <map>
#include <set>

#include "recovery/FileImage.h"
#include "recovery/RecoverRows.h"
#include "support/BackupBuilder.h"
#include "support/ForensicAnswerKey.h"

namespace {

namespace fs = std::filesystem;

// The answer key's content for a value: integers in decimal, reals as the
// literal they were inserted with, texts as they are, NULL as nothing.
bool Matches(const SqlValue& value, const std::string& content) {
  switch (value.kind) {
    case SqlValue::Kind::Null:
      return content.empty();
    case SqlValue::Kind::Integer:
      return std::to_string(value.integer) == content;
    case SqlValue::Kind::Real: {
      char* end = nullptr;
      const double expected = std::strtod(content.c_str(), &end);
      return !content.empty() && *end == '\0' && expected == value.real;
    }
    default:
      return value.bytes == content;
  }
}

bool SameRow(const RecoveredRows& recovered, const RecoveredRow& row, const yhtest::AnswerRow& answer) {
  if (recovered.tables[row.table].name != answer.table || row.values.size() != answer.contents.size()) return false;
  for (size_t i = 0; i < row.values.size(); ++i) {
    if (!Matches(row.values[i], answer.contents[i])) return false;
  }
  return true;
}

// The live rows of every table as SQLite reads them (opened immutable, so
// that nothing is written), each as the texts SQLite gives its values.
std::set<std::pair<std::string, std::vector<std::string>>> SqliteLiveRows(const fs::path& database,
                                                                            const RecoveredRows& recovered) {
  std::set<std::pair<std::string, std::vector<std::string>>> rows;
  sqlite3* db = nullptr;
  const std::string uri = "file:" + database.string() + "?immutable=1";
  if (sqlite3_open_v2(uri.c_str(), &db, SQLITE_OPEN_READONLY | SQLITE_OPEN_URI, nullptr) == SQLITE_OK) {
    for (const TableShape& table : recovered.tables) {
      sqlite3_stmt* statement = nullptr;
      const std::string sql = "SELECT * FROM \"" + table.name + "\"";
      if (sqlite3_prepare_v2(db, sql.c_str(), -1, &statement, nullptr) != SQLITE_OK) continue;
      while (sqlite3_step(statement) == SQLITE_ROW) {
        std::vector<std::string> texts;
        for (int i = 0; i < sqlite3_column_count(statement); ++i) {
          const unsigned char* text = sqlite3_column_text(statement, i);
          texts.push_back(text ? reinterpret_cast<const char*>(text) : "");
        }
        rows.insert({table.name, texts});
      }
      sqlite3_finalize(statement);
    }
  }
  sqlite3_close(db);
  return rows;
}

// A recovered row's values as SQLite would give them as texts.
std::vector<std::string> SqliteTexts(const RecoveredRow& row) {
  std::vector<std::string> texts;
  for (const SqlValue& value : row.values) {
    if (value.kind == SqlValue::Kind::Integer) {
      texts.push_back(std::to_string(value.integer));
    } else if (value.kind == SqlValue::Kind::Real) {
      // SQLite's own rendering of a real, as sqlite3_column_text gives it.
      char* text = sqlite3_mprintf("%!.15g", value.real);
      texts.push_back(text);
      sqlite3_free(text);
    } else {
      texts.push_back(value.bytes);
    }
  }
  return texts;
}

struct Tally {
  int deleted = 0;
  int recovered = 0;
  int liveAsDeleted = 0;
  int phantoms = 0;
};

// Compares the rows recovered from one database with its answer key.
void Score(const fs::path& database, Tally* tally) {
  fs::path key = database;
  key.replace_extension(".xml");
  const std::vector<yhtest::AnswerRow> answers = yhtest::ReadAnswerKey(yhtest::ReadBytes(key.string()));
  const std::string bytes = yhtest::ReadBytes(database.string());
  const RecoveredRows recovered = RecoverRows(FileImage(bytes), true);
  for (const yhtest::AnswerRow& answer : answers) {
    if (!answer.deleted) continue;
    ++tally->deleted;
    for (const RecoveredRow& row : recovered.rows) {
      if (row.status != RowStatus::Live && SameRow(recovered, row, answer)) {
        ++tally->recovered;
        break;
      }
    }
  }
  // Live as SQLite reads the file: the answer key of 09-01 lists as live
  // the rows its script deleted.
  const auto live = SqliteLiveRows(database, recovered);
  for (const RecoveredRow& row : recovered.rows) {
    if (row.status == RowStatus::Live) continue;
    if (live.count({recovered.tables[row.table].name, SqliteTexts(row)}) != 0) ++tally->liveAsDeleted;
    const bool inKey = std::any_of(answers.begin(), answers.end(),
                                   [&](const yhtest::AnswerRow& answer) { return SameRow(recovered, row, answer); });
    if (!inKey) ++tally->phantoms;
  }
}

TEST(ForensicCorpus, BringsBackTheDeletedRowsOfEachCategory) {
  const fs::path corpus = YH_FORENSIC_CORPUS_DIR;
  if (!fs::is_directory(corpus)) GTEST_SKIP() << "no SQLite forensic corpus in " << corpus;
  std::map<std::string, Tally> categories;
  for (const fs::directory_entry& folder : fs::directory_iterator(corpus)) {
    if (!folder.is_directory()) continue;
    for (const fs::directory_entry& file : fs::directory_iterator(folder.path())) {
      if (file.path().extension() == ".db") Score(file.path(), &categories[folder.path().filename().string()]);
    }
  }
  Tally total;
  for (const auto& [category, tally] : categories) {
    std::cout << "category " << category << ": " << tally.recovered << " of " << tally.deleted
              << " deleted rows with every column right, " << tally.liveAsDeleted << " live rows as deleted, "
              << tally.phantoms << " rows in no answer key\n";
    total.liveAsDeleted += tally.liveAsDeleted;
  }
  EXPECT_GE(categories["0A"].recovered, 50);
  EXPECT_GE(categories["0C"].recovered, 101);
  EXPECT_GE(categories["0D"].recovered, 19);
  EXPECT_GE(categories["0E"].recovered, 4);
  // 0B's dropped table gave its pages to a table of its shape; 0E's row in
  // no key is one cut short, the start of a key's row.
  for (const char* category : {"0A", "0C", "0D"}) EXPECT_EQ(categories[category].phantoms, 0) << category;
  EXPECT_EQ(total.liveAsDeleted, 0);
}

}  // namespace
