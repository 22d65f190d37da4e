#ifndef YH_TOOL_RENDER_H
#define YH_TOOL_RENDER_H

#include <cstddef>
#include <functional>
#include <ostream>
#include <vector>

#include "Kinds.h"
#include "Library.h"

namespace yh {

enum class Format { Json, Xml, Csv, Table };

// The library's answer for one kind.
struct Answer {
  const Kind* kind;
  Plist tree;
};

// Records in an answer: its elements; 0 when the library gave nothing.
size_t RecordCount(plist_t answer);

// One kind: the JSON of the tree (null when the library gave nothing),
// libplist's XML (an empty array then), or the flattened records as CSV or as
// a table.
void WriteAnswer(std::ostream& out, Format format, const Answer& answer);

// Takes one record of an answer; it stays the caller's.
using RecordHandler = std::function<void(plist_t record)>;
// Hands a kind's records to the handler one at a time, in the answer's
// order; false when the library had nothing to give (its answer is NULL).
using RecordsOf = std::function<bool(const Kind&, const RecordHandler&)>;

// One kind as WriteAnswer writes its answer, written record by record as
// the records come: JSON and XML hold one record at a time, CSV and tables
// the flattened rows (to know every column, and a table its widths).
void WriteRecords(std::ostream& out, Format format, const Kind& kind, const RecordsOf& recordsOf);

// Several kinds: JSON and XML as one dictionary keyed by kind name; CSV and
// tables as one section per kind, each after a line with the kind's name.
// Each kind is written record by record as WriteRecords writes it, one kind
// after the other.
void WriteAnswers(std::ostream& out, Format format, const std::vector<const Kind*>& kinds, const RecordsOf& recordsOf);

}  // namespace yh

#endif
