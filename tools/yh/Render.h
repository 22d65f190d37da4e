#ifndef YH_TOOL_RENDER_H
#define YH_TOOL_RENDER_H

#include <cstddef>
#include <functional>
#include <optional>
#include <ostream>
#include <vector>

#include "Flatten.h"
#include "JsonWriter.h"
#include "Kinds.h"
#include "Library.h"
#include "PlistXml.h"

namespace yh {

enum class Format { Json, Xml, Csv, Table };

// The library's answer for one kind.
struct Answer {
  const Kind* kind;
  Plist tree;
};

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

// What WriteRecords writes, for a host that walks the records itself (to
// write several files in one walk).
class RecordsWriter {
 public:
  RecordsWriter(std::ostream& out, Format format, const Kind& kind);

  // The record stays the caller's.
  void Add(plist_t record);
  // `given`: whether the library had an answer (false for NULL).
  void Finish(bool given);

 private:
  std::ostream& out_;
  Format format_;
  std::optional<JsonArrayWriter> json_;
  std::optional<XmlArrayWriter> xml_;
  std::optional<Flattener> flat_;
};

// Several kinds: JSON and XML as one dictionary keyed by kind name; CSV and
// tables as one section per kind, each after a line with the kind's name.
// Each kind is written record by record as WriteRecords writes it, one kind
// after the other.
void WriteAnswers(std::ostream& out, Format format, const std::vector<const Kind*>& kinds, const RecordsOf& recordsOf);

}  // namespace yh

#endif
