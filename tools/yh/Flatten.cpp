#include "Flatten.h"

#include <algorithm>
#include <functional>
#include <map>
#include <string_view>
#include <utility>

#include "PlistEntries.h"
#include "PlistJson.h"

namespace yh {
namespace {

// A row's cells as the columns they fill and their texts.
using Cells = std::vector<std::pair<size_t, std::string>>;

bool IsContainer(plist_t node) {
  const plist_type type = plist_get_node_type(node);
  return type == PLIST_ARRAY || type == PLIST_DICT;
}

std::vector<plist_t> Elements(plist_t array) {
  std::vector<plist_t> elements;
  const uint32_t size = plist_array_get_size(array);
  for (uint32_t i = 0; i < size; ++i) elements.push_back(plist_array_get_item(array, i));
  return elements;
}

}  // namespace

class RowsBuilder {
 public:
  explicit RowsBuilder(const std::vector<std::string>& known) {
    for (const std::string& column : known) Column(column);
  }

  // The column of a name, added after the others when it is new. Names are
  // looked up as views, and "parent.key" is joined in a text kept for it:
  // a large answer has a few dozen names and millions of cells.
  size_t Column(std::string_view name) {
    const auto found = index_.find(name);
    if (found != index_.end()) return found->second;
    rows_.columns.emplace_back(name);
    return index_.emplace(std::string(name), rows_.columns.size() - 1).first->second;
  }
  size_t Column(std::string_view parent, std::string_view key) {
    joined_.assign(parent).append(1, '.').append(key);
    return Column(joined_);
  }

  // One row of the record's fields and one leaf's cells.
  void Add(const Cells& fields, Cells leaf) {
    std::vector<std::string> row(rows_.columns.size());
    for (const auto& [column, text] : fields) row[column] = text;
    for (auto& [column, text] : leaf) row[column] = std::move(text);
    rows_.cells.push_back(std::move(row));
  }

  Rows Take() {
    for (auto& row : rows_.cells) row.resize(rows_.columns.size());
    return std::move(rows_);
  }

 private:
  Rows rows_;
  std::map<std::string, size_t, std::less<>> index_;
  std::string joined_;
};

namespace {

std::vector<Cells> Leaves(RowsBuilder& rows, const std::string& parent, plist_t node) {
  std::vector<Cells> leaves;
  if (plist_get_node_type(node) == PLIST_DICT) {
    ForEachEntry(node, [&](std::string_view entry, plist_t text) {
      const size_t label = rows.Column(parent, "label");
      leaves.push_back({{label, std::string(entry)}, {rows.Column(parent, "value"), CellText(text)}});
    });
    return leaves;
  }
  for (plist_t element : Elements(node)) {
    Cells leaf;
    if (plist_get_node_type(element) == PLIST_DICT) {
      ForEachEntry(element, [&](std::string_view key, plist_t value) {
        leaf.emplace_back(rows.Column(parent, key), CellText(value));
      });
    } else {
      leaf.emplace_back(rows.Column(parent), CellText(element));
    }
    leaves.push_back(std::move(leaf));
  }
  return leaves;
}

// Columns are met as the rows of before made them: the record's fields,
// then each leaf's keys in order.
void AddRecord(RowsBuilder& rows, plist_t record, const std::vector<std::string>& inCells) {
  if (plist_get_node_type(record) != PLIST_DICT) {
    rows.Add({}, {{rows.Column("value"), CellText(record)}});
    return;
  }
  Cells fields;
  std::vector<std::pair<std::string, plist_t>> containers;
  ForEachEntry(record, [&](std::string_view key, plist_t value) {
    if (IsContainer(value) && std::find(inCells.begin(), inCells.end(), key) == inCells.end()) {
      containers.emplace_back(key, value);
    } else {
      fields.emplace_back(rows.Column(key), CellText(value));
    }
  });
  std::vector<Cells> leaves;
  for (const auto& [key, value] : containers) {
    for (Cells& leaf : Leaves(rows, key, value)) leaves.push_back(std::move(leaf));
  }
  if (leaves.empty()) {
    rows.Add(fields, {});
    return;
  }
  for (Cells& leaf : leaves) rows.Add(fields, std::move(leaf));
}

}  // namespace

Rows Flatten(plist_t answer, const std::vector<std::string>& known, const std::vector<std::string>& inCells) {
  Flattener rows(known, inCells);
  if (answer) {
    if (plist_get_node_type(answer) == PLIST_ARRAY) {
      for (plist_t record : Elements(answer)) rows.Add(record);
    } else {
      rows.Add(answer);
    }
  }
  return rows.Take();
}

Flattener::Flattener(const std::vector<std::string>& known, const std::vector<std::string>& inCells)
    : rows_(std::make_unique<RowsBuilder>(known)), inCells_(inCells) {}

Flattener::~Flattener() = default;

void Flattener::Add(plist_t record) { AddRecord(*rows_, record, inCells_); }

Rows Flattener::Take() { return rows_->Take(); }

}  // namespace yh
