#include "recovery/TableShape.h"

#include <algorithm>
#include <cctype>

namespace {

std::string Upper(std::string_view text) {
  std::string upper(text);
  for (char& c : upper) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return upper;
}

bool Contains(const std::string& upper, const char* part) { return upper.find(part) != std::string::npos; }

// A token of the statement: a word, a quoted name (unquoted), or one
// punctuation character. `quoted` keeps names from being taken as keywords.
struct Token {
  std::string text;
  bool quoted = false;
};

std::vector<Token> Tokenize(std::string_view sql) {
  std::vector<Token> tokens;
  size_t i = 0;
  while (i < sql.size()) {
    const char c = sql[i];
    if (std::isspace(static_cast<unsigned char>(c))) {
      ++i;
    } else if (c == '-' && i + 1 < sql.size() && sql[i + 1] == '-') {
      while (i < sql.size() && sql[i] != '\n') ++i;
    } else if (c == '/' && i + 1 < sql.size() && sql[i + 1] == '*') {
      const size_t close = sql.find("*/", i + 2);
      i = close == std::string_view::npos ? sql.size() : close + 2;
    } else if (c == '"' || c == '\'' || c == '`' || c == '[') {
      const char close = c == '[' ? ']' : c;
      Token token{"", true};
      ++i;
      while (i < sql.size()) {
        if (sql[i] == close) {
          if (close != ']' && i + 1 < sql.size() && sql[i + 1] == close) {
            token.text.push_back(close);
            i += 2;
            continue;
          }
          ++i;
          break;
        }
        token.text.push_back(sql[i++]);
      }
      tokens.push_back(std::move(token));
    } else if (std::isalnum(static_cast<unsigned char>(c)) || c == '_' || static_cast<unsigned char>(c) >= 0x80) {
      const size_t start = i;
      while (i < sql.size() && (std::isalnum(static_cast<unsigned char>(sql[i])) || sql[i] == '_' || sql[i] == '$' ||
                                static_cast<unsigned char>(sql[i]) >= 0x80)) {
        ++i;
      }
      tokens.push_back({std::string(sql.substr(start, i - start)), false});
    } else {
      tokens.push_back({std::string(1, c), false});
      ++i;
    }
  }
  return tokens;
}

bool IsKeyword(const Token& token, const char* keyword) { return !token.quoted && Upper(token.text) == keyword; }

bool StartsConstraint(const Token& token) {
  static const char* const kWords[] = {"CONSTRAINT", "PRIMARY", "NOT",       "NULL",      "UNIQUE", "CHECK",
                                       "DEFAULT",    "COLLATE", "REFERENCES", "GENERATED", "AS"};
  return std::any_of(std::begin(kWords), std::end(kWords), [&](const char* word) { return IsKeyword(token, word); });
}

// The statement's top-level definitions, between its outer parentheses.
std::vector<std::vector<Token>> Definitions(const std::vector<Token>& tokens, size_t* after) {
  std::vector<std::vector<Token>> parts;
  size_t i = 0;
  while (i < tokens.size() && !(tokens[i].text == "(" && !tokens[i].quoted)) ++i;
  if (i == tokens.size()) return parts;
  parts.emplace_back();
  int depth = 0;
  for (++i; i < tokens.size(); ++i) {
    const Token& token = tokens[i];
    if (!token.quoted && token.text == "(") ++depth;
    if (!token.quoted && token.text == ")" && depth-- == 0) break;
    if (!token.quoted && token.text == "," && depth == 0) {
      parts.emplace_back();
    } else {
      parts.back().push_back(token);
    }
  }
  *after = i;
  return parts;
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
  for (const std::vector<Token>& part : parts) {
    if (part.empty()) continue;
    if (IsTableConstraint(part)) {
      const std::string named = PrimaryKeyColumn(part);
      if (!named.empty()) keyColumn = named;
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
    table->columns.push_back(std::move(column));
  }
  if (table->columns.empty()) return false;
  if (!keyColumn.empty() && table->rowidColumn < 0) {
    for (size_t c = 0; c < table->columns.size(); ++c) {
      if (Upper(table->columns[c].name) == Upper(keyColumn) && Upper(table->columns[c].declaredType) == "INTEGER") {
        table->rowidColumn = static_cast<int>(c);
      }
    }
  }
  for (size_t i = after; i + 1 < tokens.size(); ++i) {
    if (IsKeyword(tokens[i], "WITHOUT") && IsKeyword(tokens[i + 1], "ROWID")) table->withoutRowid = true;
  }
  if (table->withoutRowid) table->rowidColumn = -1;
  return true;
}
