#ifndef YH_TOOL_FLATTEN_H
#define YH_TOOL_FLATTEN_H

#include <plist/plist.h>

#include <memory>
#include <string>
#include <vector>

namespace yh {

// Records as rows of texts, every row as long as `columns`.
struct Rows {
  std::vector<std::string> columns;
  std::vector<std::vector<std::string>> cells;
};

// One row per record of an answer (an array of dictionaries). A record that
// holds a list (the messages of a thread, the properties of a contact) gives
// one row per leaf instead, each repeating the record's own fields, so the
// leaf keeps its parent's id. A leaf of a nested array of dictionaries fills
// "parent.key" columns; an entry of a nested dictionary fills
// "parent.label" and "parent.value". A record's container named in
// `inCells` fills one cell of each of its rows instead, as compact JSON.
// Columns start with `known` and go on with any other key in the order it
// is first met.
Rows Flatten(plist_t answer, const std::vector<std::string>& known, const std::vector<std::string>& inCells = {});

class RowsBuilder;

// The same rows made one record at a time, so that a record may be freed
// once it is added.
class Flattener {
 public:
  Flattener(const std::vector<std::string>& known, const std::vector<std::string>& inCells);
  ~Flattener();
  Flattener(const Flattener&) = delete;
  Flattener& operator=(const Flattener&) = delete;

  void Add(plist_t record);
  // The rows of every record added; the flattener is spent.
  Rows Take();

 private:
  std::unique_ptr<RowsBuilder> rows_;
  const std::vector<std::string>& inCells_;
};

}  // namespace yh

#endif
