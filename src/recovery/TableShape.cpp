#include "recovery/TableShape.h"

#include <algorithm>
#include <optional>

#include "recovery/SqlTokens.h"

namespace {

bool Contains(const std::string& upper, const char* part) { return upper.find(part) != std::string::npos; }

bool StartsConstraint(const Token& token) {
  static const char* const kWords[] = {"CONSTRAINT", "PRIMARY", "NOT",       "NULL",      "UNIQUE", "CHECK",
                                       "DEFAULT",    "COLLATE", "REFERENCES", "GENERATED", "AS"};
  return std::any_of(std::begin(kWords), std::end(kWords), [&](const char* word) { return IsKeyword(token, word); });
}

bool IsTableConstraint(const std::vector<Token>& part) {
  return IsKeyword(part[0], "CONSTRAINT") || IsKeyword(part[0], "PRIMARY") || IsKeyword(part[0], "UNIQUE") ||
         IsKeyword(part[0], "CHECK") || IsKeyword(part[0], "FOREIGN");
}

// "PRIMARY KEY" inside the definition, not followed by DESC (which SQLite
// keeps as an ordinary column).
bool DeclaresPrimaryKey(const std::vector<Token>& part, size_t from) {
  for (size_t i = from; i + 1 < part.size(); ++i) {
    if (IsKeyword(part[i], "PRIMARY") && IsKeyword(part[i + 1], "KEY")) {
      return !(i + 2 < part.size() && IsKeyword(part[i + 2], "DESC"));
    }
  }
  return false;
}

// A UNIQUE or PRIMARY KEY constraint as declared, by column names.
struct DeclaredKey {
  std::vector<std::string> names;
  bool primary = false;
};

// The key a table constraint "UNIQUE (...)" or "PRIMARY KEY (...)" declares:
// the first word of each entry of its list (the rest is a collation or an order).
std::optional<DeclaredKey> TableKey(const std::vector<Token>& part) {
  for (size_t i = 0; i + 1 < part.size(); ++i) {
    const bool primary = IsKeyword(part[i], "PRIMARY") && IsKeyword(part[i + 1], "KEY");
    if (!primary && !IsKeyword(part[i], "UNIQUE")) continue;
    DeclaredKey key{{}, primary};
    size_t open = i + (primary ? 2 : 1);
    if (open >= part.size() || part[open].text != "(") return std::nullopt;
    bool entryStart = true;
    for (size_t k = open + 1; k < part.size() && part[k].text != ")"; ++k) {
      if (entryStart) key.names.push_back(part[k].text);
      entryStart = part[k].text == "," && !part[k].quoted;
    }
    return key;
  }
  return std::nullopt;
}

// The keys a column's constraints (from `from` on) declare, in their order.
void ColumnKeys(const std::vector<Token>& part, size_t from, std::vector<DeclaredKey>* keys) {
  for (size_t i = from; i < part.size(); ++i) {
    if (IsKeyword(part[i], "UNIQUE")) keys->push_back({{part[0].text}, false});
    if (IsKeyword(part[i], "PRIMARY") && i + 1 < part.size() && IsKeyword(part[i + 1], "KEY")) {
      keys->push_back({{part[0].text}, true});
    }
  }
}

// The unique keys SQLite indexes: a primary key that is the rowid has no
// index, and a key declared twice gets one index.
std::vector<UniqueKey> IndexedKeys(const TableShape& table, const std::vector<DeclaredKey>& keys) {
  std::vector<UniqueKey> indexed;
  std::vector<std::vector<std::string>> seen;
  for (const DeclaredKey& key : keys) {
    if (key.primary && key.names.size() == 1 && table.rowidColumn >= 0 &&
        table.ColumnNamed(key.names[0]) == table.rowidColumn) {
      continue;
    }
    std::vector<std::string> upper;
    for (const std::string& name : key.names) upper.push_back(Upper(name));
    if (std::find(seen.begin(), seen.end(), upper) != seen.end()) continue;
    seen.push_back(upper);
    UniqueKey unique;
    for (const std::string& name : key.names) {
      const int column = table.ColumnNamed(name);
      if (column < 0) {
        unique.columns.clear();
        break;
      }
      unique.columns.push_back(static_cast<size_t>(column));
    }
    indexed.push_back(std::move(unique));
  }
  return indexed;
}

// The column a table constraint "PRIMARY KEY (name)" names, when it names one.
std::string PrimaryKeyColumn(const std::vector<Token>& part) {
  for (size_t i = 0; i + 4 < part.size(); ++i) {
    if (IsKeyword(part[i], "PRIMARY") && IsKeyword(part[i + 1], "KEY") && part[i + 2].text == "(" &&
        part[i + 4].text == ")") {
      return part[i + 3].text;
    }
  }
  return "";
}

}  // namespace

Affinity AffinityOf(std::string_view declaredType) {
  const std::string upper = Upper(declaredType);
  if (Contains(upper, "INT")) return Affinity::Integer;
  if (Contains(upper, "CHAR") || Contains(upper, "CLOB") || Contains(upper, "TEXT")) return Affinity::Text;
  if (upper.empty() || Contains(upper, "BLOB")) return Affinity::Blob;
  if (Contains(upper, "REAL") || Contains(upper, "FLOA") || Contains(upper, "DOUB")) return Affinity::Real;
  return Affinity::Numeric;
}

int TableShape::ColumnNamed(std::string_view name) const {
  const std::string upper = Upper(name);
  for (size_t c = 0; c < columns.size(); ++c) {
    if (Upper(columns[c].name) == upper) return static_cast<int>(c);
  }
  return -1;
}

bool ParseCreateTable(std::string_view sql, TableShape* table) {
  const std::vector<Token> tokens = Tokenize(sql);
  if (tokens.size() < 2 || !IsKeyword(tokens[0], "CREATE")) return false;
  const bool isTable = std::any_of(tokens.begin(), tokens.begin() + std::min<size_t>(tokens.size(), 4),
                                   [](const Token& token) { return IsKeyword(token, "TABLE"); });
  if (!isTable || IsKeyword(tokens[1], "VIRTUAL")) return false;
  size_t after = 0;
  const std::vector<std::vector<Token>> parts = Definitions(tokens, &after);
  table->columns.clear();
  table->rowidColumn = -1;
  std::string keyColumn;
  std::vector<DeclaredKey> keys;
  for (const std::vector<Token>& part : parts) {
    if (part.empty()) continue;
    if (IsTableConstraint(part)) {
      const std::string named = PrimaryKeyColumn(part);
      if (!named.empty()) keyColumn = named;
      if (std::optional<DeclaredKey> key = TableKey(part)) keys.push_back(std::move(*key));
      continue;
    }
    Column column{part[0].text, ""};
    size_t i = 1;
    for (; i < part.size() && !StartsConstraint(part[i]); ++i) {
      if (!column.declaredType.empty() && part[i].text != "(" && part[i].text != ")" && part[i].text != "," &&
          column.declaredType.back() != '(') {
        column.declaredType.push_back(' ');
      }
      column.declaredType += part[i].text;
    }
    if (DeclaresPrimaryKey(part, i) && Upper(column.declaredType) == "INTEGER") {
      table->rowidColumn = static_cast<int>(table->columns.size());
    }
    ColumnKeys(part, i, &keys);
    table->columns.push_back(std::move(column));
  }
  if (table->columns.empty()) return false;
  if (!keyColumn.empty() && table->rowidColumn < 0) {
    const int column = table->ColumnNamed(keyColumn);
    if (column >= 0 && Upper(table->columns[column].declaredType) == "INTEGER") table->rowidColumn = column;
  }
  for (size_t i = after; i + 1 < tokens.size(); ++i) {
    if (IsKeyword(tokens[i], "WITHOUT") && IsKeyword(tokens[i + 1], "ROWID")) table->withoutRowid = true;
  }
  if (table->withoutRowid) table->rowidColumn = -1;
  table->uniqueKeys = IndexedKeys(*table, keys);
  return true;
}
