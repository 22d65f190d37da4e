#include "kinds/current/ScratchDatabase.h"

#include <algorithm>
#include <cctype>
#include <set>
#include <string>

namespace current {

struct ScratchDatabase::Table {
  std::string name;  // quoted
  int aliasColumn = -1;
  size_t columns = 0;
  int64_t nextRowid = -1;  // counts down
  std::unique_ptr<Database::Statement> skip;
  std::unique_ptr<Database::Statement> replace;
};

namespace {

std::string Quoted(const std::string& name) {
  std::string quoted = "\"";
  for (char c : name) quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
  return quoted + "\"";
}

std::string Lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

// The keyword that gives the column its declared affinity, without any
// other part of a declaration a crafted schema may hold.
const char* AffinityKeyword(const std::string& declaredType) {
  switch (AffinityOf(declaredType)) {
    case Affinity::Integer: return "INTEGER";
    case Affinity::Text: return "TEXT";
    case Affinity::Real: return "REAL";
    case Affinity::Numeric: return "NUMERIC";
    case Affinity::Blob: break;
  }
  return "BLOB";
}

std::string CreateStatement(const TableShape& shape) {
  std::string sql = "CREATE TABLE " + Quoted(shape.name) + " (";
  for (size_t at = 0; at < shape.columns.size(); ++at) {
    sql += (at ? ", " : "") + Quoted(shape.columns[at].name) + " ";
    sql += static_cast<int>(at) == shape.rowidColumn ? "INTEGER PRIMARY KEY"
                                                      : AffinityKeyword(shape.columns[at].declaredType);
  }
  return sql + ")";
}

// The rowid goes into the alias column when the table has one, else first.
std::string InsertStatement(const TableShape& shape, const char* conflict) {
  std::string columns = shape.rowidColumn < 0 ? "\"_rowid_\"" : "";
  std::string values = shape.rowidColumn < 0 ? "?" : "";
  for (const Column& column : shape.columns) {
    columns += (columns.empty() ? "" : ", ") + Quoted(column.name);
    values += values.empty() ? "?" : ", ?";
  }
  return std::string("INSERT OR ") + conflict + " INTO " + Quoted(shape.name) + " (" + columns + ") VALUES (" +
         values + ")";
}

void Bind(Database::Statement& statement, int parameter, const SqlValue& value) {
  switch (value.kind) {
    case SqlValue::Kind::Integer: statement.BindInt64(parameter, value.integer); return;
    case SqlValue::Kind::Real: statement.BindReal(parameter, value.real); return;
    case SqlValue::Kind::Text: statement.BindText(parameter, value.bytes); return;
    case SqlValue::Kind::Blob: statement.BindBlob(parameter, value.bytes); return;
    case SqlValue::Kind::Null: return;  // the bindings were cleared
  }
}

}  // namespace

ScratchDatabase::ScratchDatabase(const RecoveredRows& rows) : rows_(rows), database_(Database::InMemory()) {
  std::vector<int64_t> lowest(rows.tables.size(), 0);
  for (const RecoveredRow& row : rows.rows) {
    if (row.rowid && row.table < lowest.size()) lowest[row.table] = std::min(lowest[row.table], *row.rowid);
  }
  std::set<std::string> names;
  for (const TableShape& shape : rows.tables) {
    if (!shape.dropped) names.insert(Lower(shape.name));
  }
  tables_.resize(rows.tables.size());
  std::set<std::string> made;
  for (size_t at = 0; at < rows.tables.size(); ++at) {
    const TableShape& shape = rows.tables[at];
    const std::string name = Lower(shape.name);
    if ((shape.dropped && names.count(name)) || !made.insert(name).second) continue;
    if (!database_.Exec(CreateStatement(shape).c_str(), nullptr, nullptr)) continue;
    auto table = std::make_unique<Table>();
    table->name = Quoted(shape.name);
    table->aliasColumn = shape.rowidColumn;
    table->columns = shape.columns.size();
    table->nextRowid = lowest[at] > INT64_MIN ? lowest[at] - 1 : lowest[at];
    table->skip = std::make_unique<Database::Statement>(database_, InsertStatement(shape, "IGNORE").c_str());
    table->replace = std::make_unique<Database::Statement>(database_, InsertStatement(shape, "REPLACE").c_str());
    tables_[at] = std::move(table);
  }
}

ScratchDatabase::~ScratchDatabase() = default;

void ScratchDatabase::Add(const std::vector<size_t>& positions, WhenTaken whenTaken) {
  database_.Exec("BEGIN", nullptr, nullptr);
  for (size_t position : positions) {
    const RecoveredRow& row = rows_.rows[position];
    if (row.table >= tables_.size() || !tables_[row.table]) continue;
    Table& table = *tables_[row.table];
    Database::Statement& insert = whenTaken == WhenTaken::Skip ? *table.skip : *table.replace;
    const int64_t rowid = row.rowid ? *row.rowid : table.nextRowid > INT64_MIN ? table.nextRowid-- : INT64_MIN;
    insert.ClearBindings();
    const int first = table.aliasColumn < 0 ? 2 : 1;  // the parameter of the first column
    insert.BindInt64(table.aliasColumn < 0 ? 1 : first + table.aliasColumn, rowid);
    const size_t given = std::min(table.columns, row.values.size());
    for (size_t column = 0; column < given; ++column) {
      const int parameter = first + static_cast<int>(column);
      if (static_cast<int>(column) != table.aliasColumn) Bind(insert, parameter, row.values[column]);
    }
    insert.Step();
  }
  database_.Exec("COMMIT", nullptr, nullptr);
}

void ScratchDatabase::Empty(size_t table) {
  if (table >= tables_.size() || !tables_[table]) return;
  database_.Exec(("DELETE FROM " + tables_[table]->name).c_str(), nullptr, nullptr);
}

std::vector<size_t> LiveRows(const RecoveredRows& rows) {
  std::vector<size_t> live;
  for (size_t at = 0; at < rows.rows.size(); ++at) {
    if (rows.rows[at].status == RowStatus::Live) live.push_back(at);
  }
  return live;
}

}  // namespace current
