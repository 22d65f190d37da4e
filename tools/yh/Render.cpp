#include "Render.h"

#include <utility>

#include "Csv.h"
#include "Flatten.h"
#include "JsonWriter.h"
#include "PlistXml.h"
#include "TextTable.h"

namespace yh {
namespace {

void WriteRows(std::ostream& out, Format format, Rows rows) {
  if (format == Format::Csv) {
    WriteCsv(out, rows);
  } else {
    WriteTable(out, std::move(rows));
  }
}

// A kind's flattened records and how many there were.
struct FlatRecords {
  Rows rows;
  size_t records = 0;
};

FlatRecords FlattenRecords(const Kind& kind, const RecordsOf& recordsOf) {
  Flattener flat(kind.columns, kind.inCells);
  size_t records = 0;
  recordsOf(kind, [&](plist_t record) {
    flat.Add(record);
    ++records;
  });
  return {flat.Take(), records};
}

// The JSON of a kind's answer standing at `depth`: null, or its array.
void WriteJsonRecords(std::ostream& out, int depth, const Kind& kind, const RecordsOf& recordsOf) {
  JsonArrayWriter array(out, depth);
  if (recordsOf(kind, [&](plist_t record) { array.Add(record); })) {
    array.Finish();
  } else {
    out.write("null", 4);
  }
}

void WriteXmlRecords(XmlArrayWriter array, const Kind& kind, const RecordsOf& recordsOf) {
  recordsOf(kind, [&](plist_t record) { array.Add(record); });
  array.Finish();
}

// A kind's section of CSV or a table: its name line, then its rows.
void WriteSection(std::ostream& out, Format format, const Kind& kind, const RecordsOf& recordsOf) {
  FlatRecords flat = FlattenRecords(kind, recordsOf);
  if (format == Format::Csv) {
    out << "# " << kind.name << '\n';
  } else {
    out << kind.name << ": " << flat.records << (flat.records == 1 ? " record\n" : " records\n");
  }
  WriteRows(out, format, std::move(flat.rows));
}

}  // namespace

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
      WriteRows(out, format, Flatten(answer.tree.get(), answer.kind->columns, answer.kind->inCells));
      break;
  }
}

void WriteRecords(std::ostream& out, Format format, const Kind& kind, const RecordsOf& recordsOf) {
  RecordsWriter writer(out, format, kind);
  writer.Finish(recordsOf(kind, [&](plist_t record) { writer.Add(record); }));
}

RecordsWriter::RecordsWriter(std::ostream& out, Format format, const Kind& kind) : out_(out), format_(format) {
  switch (format) {
    case Format::Json:
      json_.emplace(out, 0);
      break;
    case Format::Xml:
      xml_.emplace(out);
      break;
    case Format::Csv:
    case Format::Table:
      flat_.emplace(kind.columns, kind.inCells);
      break;
  }
}

void RecordsWriter::Add(plist_t record) {
  if (json_) json_->Add(record);
  if (xml_) xml_->Add(record);
  if (flat_) flat_->Add(record);
}

void RecordsWriter::Finish(bool given) {
  if (json_) {
    if (given) {
      json_->Finish();
    } else {
      out_.write("null", 4);
    }
    out_ << '\n';
  }
  if (xml_) xml_->Finish();
  if (flat_) WriteRows(out_, format_, flat_->Take());
}

void WriteAnswers(std::ostream& out, Format format, const std::vector<const Kind*>& kinds, const RecordsOf& recordsOf) {
  switch (format) {
    case Format::Json: {
      JsonObjectWriter all(out);
      for (const Kind* kind : kinds) {
        all.Key(kind->name);
        WriteJsonRecords(out, 1, *kind, recordsOf);
      }
      all.Finish();
      out << '\n';
      break;
    }
    case Format::Xml: {
      XmlDictionaryWriter all(out);
      for (const Kind* kind : kinds) WriteXmlRecords(XmlArrayWriter(out, all, kind->name), *kind, recordsOf);
      all.Finish();
      break;
    }
    case Format::Csv:
    case Format::Table:
      for (size_t i = 0; i < kinds.size(); ++i) {
        if (i) out << '\n';
        WriteSection(out, format, *kinds[i], recordsOf);
      }
      break;
  }
}

}  // namespace yh
