#include "recovery/UniqueIndex.h"

#include <vector>

#include "recovery/SqlTokens.h"

bool ParseUniqueIndex(std::string_view sql, const TableShape& table, UniqueKey* key) {
  const std::vector<Token> tokens = Tokenize(sql);
  if (tokens.size() < 3 || !IsKeyword(tokens[0], "CREATE") || !IsKeyword(tokens[1], "UNIQUE") ||
      !IsKeyword(tokens[2], "INDEX")) {
    return false;
  }
  size_t after = 0;
  const std::vector<std::vector<Token>> parts = Definitions(tokens, &after);
  for (size_t i = after; i < tokens.size(); ++i) {
    if (IsKeyword(tokens[i], "WHERE")) return false;
  }
  key->columns.clear();
  key->rootPage = 0;
  for (const std::vector<Token>& part : parts) {
    // A plain column, then at most a collation and an order.
    const bool plain = part.size() == 1 || (part.size() > 1 && (IsKeyword(part[1], "COLLATE") ||
                                                                 IsKeyword(part[1], "ASC") || IsKeyword(part[1], "DESC")));
    const int column = plain ? table.ColumnNamed(part[0].text) : -1;
    if (column < 0) return false;
    key->columns.push_back(static_cast<size_t>(column));
  }
  return !key->columns.empty();
}
