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

// Asks for a kind's answer.
using AnswerOf = std::function<Plist(const Kind&)>;

// Several kinds: JSON and XML as one dictionary keyed by kind name; CSV and
// tables as one section per kind, each after a line with the kind's name.
// Each kind is asked for, written and freed before the next is asked for, so
// that only one answer is held at a time.
void WriteAnswers(std::ostream& out, Format format, const std::vector<const Kind*>& kinds, const AnswerOf& answerOf);

}  // namespace yh

#endif
