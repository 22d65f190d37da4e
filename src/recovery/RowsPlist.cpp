#include "recovery/RowsPlist.h"

#include <string>

namespace {

// Integers down to -2^53 are exact as doubles.
const int64_t kExactReal = int64_t{1} << 53;

plist_t ValueNode(const SqlValue& value) {
  switch (value.kind) {
    case SqlValue::Kind::Null:
      return nullptr;
    case SqlValue::Kind::Integer:
      if (value.integer >= 0) return plist_new_uint(static_cast<uint64_t>(value.integer));
      if (value.integer >= -kExactReal) return plist_new_real(static_cast<double>(value.integer));
      return plist_new_string(std::to_string(value.integer).c_str());
    case SqlValue::Kind::Real:
      return plist_new_real(value.real);
    case SqlValue::Kind::Text:
      return plist_new_string(value.bytes.c_str());
    case SqlValue::Kind::Blob:
      return plist_new_data(value.bytes.data(), value.bytes.size());
  }
  return nullptr;
}

plist_t RowNode(const RecoveredRows& recovered, const RecoveredRow& row) {
  const TableShape& table = recovered.tables[row.table];
  plist_t node = plist_new_dict();
  plist_dict_set_item(node, "table", plist_new_string(table.name.c_str()));
  plist_dict_set_item(node, "source", plist_new_string(RowSourceName(row.source)));
  plist_dict_set_item(node, "status", plist_new_string(RowStatusName(row.status)));
  if (row.rowid) plist_dict_set_item(node, "rowid", ValueNode(SqlValue{SqlValue::Kind::Integer, *row.rowid, 0, {}}));
  plist_dict_set_item(node, "file", plist_new_string(StoredInName(row.file)));
  plist_dict_set_item(node, "offset", plist_new_uint(row.offset));
  if (row.partial) plist_dict_set_item(node, "partial", plist_new_bool(1));
  plist_t values = plist_new_dict();
  for (size_t i = 0; i < row.values.size() && i < table.columns.size(); ++i) {
    if (plist_t value = ValueNode(row.values[i])) plist_dict_set_item(values, table.columns[i].name.c_str(), value);
  }
  plist_dict_set_item(node, "values", values);
  return node;
}

}  // namespace

plist_t RowsPlist(const RecoveredRows& recovered) {
  plist_t rows = plist_new_array();
  for (const RecoveredRow& row : recovered.rows) plist_array_append_item(rows, RowNode(recovered, row));
  return rows;
}
