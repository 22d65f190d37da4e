#include "Render.h"

#include <utility>

#include "Csv.h"
#include "Flatten.h"
#include "JsonWriter.h"
#include "PlistXml.h"
#include "TextTable.h"

namespace yh {
namespace {

void WriteRows(std::ostream& out, Format format, const Answer& answer) {
  Rows rows = Flatten(answer.tree.get(), answer.kind->columns, answer.kind->inCells);
  if (format == Format::Csv) {
    WriteCsv(out, rows);
  } else {
    WriteTable(out, std::move(rows));
  }
}

// A kind's section of CSV or a table: its name line, then its rows.
void WriteSection(std::ostream& out, Format format, const Answer& answer) {
  if (format == Format::Csv) {
    out << "# " << answer.kind->name << '\n';
  } else {
    const size_t records = RecordCount(answer.tree.get());
    out << answer.kind->name << ": " << records << (records == 1 ? " record\n" : " records\n");
  }
  WriteRows(out, format, answer);
}

}  // namespace

size_t RecordCount(plist_t answer) {
  if (!answer) return 0;
  return plist_get_node_type(answer) == PLIST_ARRAY ? plist_array_get_size(answer) : 1;
}

void WriteAnswer(std::ostream& out, Format format, const Answer& answer) {
  switch (format) {
    case Format::Json:
      WriteJson(out, answer.tree.get());
      out << '\n';
      break;
    case Format::Xml:
      WriteXml(out, answer.tree.get());
      break;
    case Format::Csv:
    case Format::Table:
      WriteRows(out, format, answer);
      break;
  }
}

void WriteAnswers(std::ostream& out, Format format, const std::vector<const Kind*>& kinds, const AnswerOf& answerOf) {
  switch (format) {
    case Format::Json: {
      JsonObjectWriter all(out);
      for (const Kind* kind : kinds) all.Add(kind->name, answerOf(*kind).get());
      all.Finish();
      out << '\n';
      break;
    }
    case Format::Xml: {
      XmlDictionaryWriter all(out);
      for (const Kind* kind : kinds) all.Add(kind->name, answerOf(*kind));
      all.Finish();
      break;
    }
    case Format::Csv:
    case Format::Table:
      for (size_t i = 0; i < kinds.size(); ++i) {
        if (i) out << '\n';
        WriteSection(out, format, {kinds[i], answerOf(*kinds[i])});
      }
      break;
  }
}

}  // namespace yh
