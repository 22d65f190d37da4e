#include "Flatten.h"

#include <iterator>
#include <map>
#include <string_view>
#include <utility>

#include "PlistEntries.h"
#include "PlistJson.h"

namespace yh {
namespace {

using Cells = std::vector<std::pair<std::string, std::string>>;

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

std::vector<Cells> Leaves(const std::string& parent, plist_t node) {
  std::vector<Cells> leaves;
  if (plist_get_node_type(node) == PLIST_DICT) {
    ForEachEntry(node, [&](std::string_view label, plist_t value) {
      leaves.push_back({{parent + ".label", std::string(label)}, {parent + ".value", CellText(value)}});
    });
    return leaves;
  }
  for (plist_t element : Elements(node)) {
    Cells leaf;
    if (plist_get_node_type(element) == PLIST_DICT) {
      ForEachEntry(element, [&](std::string_view key, plist_t value) {
        leaf.emplace_back(parent + "." + std::string(key), CellText(value));
      });
    } else {
      leaf.emplace_back(parent, CellText(element));
    }
    leaves.push_back(std::move(leaf));
  }
  return leaves;
}

class RowsBuilder {
 public:
  explicit RowsBuilder(const std::vector<std::string>& known) {
    for (const std::string& column : known) Column(column);
  }

  void Add(Cells cells) {
    std::vector<std::string> row(rows_.columns.size());
    for (auto& [column, text] : cells) {
      const size_t at = Column(column);
      if (at >= row.size()) row.resize(at + 1);
      row[at] = std::move(text);
    }
    rows_.cells.push_back(std::move(row));
  }

  Rows Take() {
    for (auto& row : rows_.cells) row.resize(rows_.columns.size());
    return std::move(rows_);
  }

 private:
  size_t Column(const std::string& name) {
    const auto found = index_.find(name);
    if (found != index_.end()) return found->second;
    rows_.columns.push_back(name);
    return index_[name] = rows_.columns.size() - 1;
  }

  Rows rows_;
  std::map<std::string, size_t> index_;
};

void AddRecord(RowsBuilder& rows, plist_t record) {
  if (plist_get_node_type(record) != PLIST_DICT) {
    rows.Add({{"value", CellText(record)}});
    return;
  }
  Cells fields;
  std::vector<Cells> leaves;
  ForEachEntry(record, [&](std::string_view key, plist_t value) {
    if (!IsContainer(value)) {
      fields.emplace_back(std::string(key), CellText(value));
      return;
    }
    for (Cells& leaf : Leaves(std::string(key), value)) leaves.push_back(std::move(leaf));
  });
  if (leaves.empty()) {
    rows.Add(std::move(fields));
    return;
  }
  for (Cells& leaf : leaves) {
    Cells row = fields;
    row.insert(row.end(), std::make_move_iterator(leaf.begin()), std::make_move_iterator(leaf.end()));
    rows.Add(std::move(row));
  }
}

}  // namespace

Rows Flatten(plist_t answer, const std::vector<std::string>& known) {
  RowsBuilder rows(known);
  if (answer) {
    if (plist_get_node_type(answer) == PLIST_ARRAY) {
      for (plist_t record : Elements(answer)) AddRecord(rows, record);
    } else {
      AddRecord(rows, answer);
    }
  }
  return rows.Take();
}

}  // namespace yh
