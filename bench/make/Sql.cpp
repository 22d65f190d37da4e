#include "Sql.h"

#include "support/BackupBuilder.h"

namespace bench {

std::string Quote(const std::string& text) {
  std::string literal = "'";
  for (const char c : text) literal += c == '\'' ? std::string("''") : std::string(1, c);
  return literal + "'";
}

SqlScript::SqlScript(const std::string& schemaName) : text_(yhtest::Schema(schemaName) + "\nBEGIN;\n") {}

void SqlScript::Insert(const char* table, const char* columns, const std::string& values) {
  text_ += "INSERT INTO ";
  text_ += table;
  text_ += " (";
  text_ += columns;
  text_ += ") VALUES (";
  text_ += values;
  text_ += ");\n";
}

}  // namespace bench
