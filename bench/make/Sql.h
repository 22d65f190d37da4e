#ifndef YH_BENCH_MAKE_SQL_H
#define YH_BENCH_MAKE_SQL_H

#include <cstdint>
#include <string>

namespace bench {

// An SQL text literal.
std::string Quote(const std::string& text);

// The SQL text of one device database: its real schema, then every row in
// one transaction (one statement a line), so that large tables are written
// in seconds.
class SqlScript {
 public:
  explicit SqlScript(const std::string& schemaName);

  // `values` is the comma-separated list of SQL literals for `columns`.
  void Insert(const char* table, const char* columns, const std::string& values);
  std::string Text() const { return text_ + "COMMIT;\n"; }

 private:
  std::string text_;
};

}  // namespace bench

#endif
