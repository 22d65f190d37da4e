#include "Render.h"

#include "Csv.h"
#include "Flatten.h"
#include "PlistJson.h"
#include "TextTable.h"

namespace yh {
namespace {

void WriteXml(std::ostream& out, plist_t tree) {
  char* xml = nullptr;
  uint32_t length = 0;
  plist_to_xml(tree, &xml, &length);
  out.write(xml, length);
  plist_to_xml_free(xml);
}

// A plist copy of the answer; an empty array stands for no answer, as a
// property list has no null.
plist_t CopyOrEmpty(plist_t tree) { return tree ? plist_copy(tree) : plist_new_array(); }

void WriteRows(std::ostream& out, Format format, const Answer& answer) {
  const Rows rows = Flatten(answer.tree.get(), answer.kind->columns);
  if (format == Format::Csv) {
    WriteCsv(out, rows);
  } else {
    WriteTable(out, rows);
  }
}

}  // namespace

size_t RecordCount(plist_t answer) {
  if (!answer) return 0;
  return plist_get_node_type(answer) == PLIST_ARRAY ? plist_array_get_size(answer) : 1;
}

void WriteAnswer(std::ostream& out, Format format, const Answer& answer) {
  switch (format) {
    case Format::Json:
      out << JsonText(ToJson(answer.tree.get())) << '\n';
      break;
    case Format::Xml: {
      const Plist copy(CopyOrEmpty(answer.tree.get()));
      WriteXml(out, copy.get());
      break;
    }
    case Format::Csv:
    case Format::Table:
      WriteRows(out, format, answer);
      break;
  }
}

void WriteAnswers(std::ostream& out, Format format, const std::vector<Answer>& answers) {
  switch (format) {
    case Format::Json: {
      Json all = Json::object();
      for (const Answer& answer : answers) all[answer.kind->name] = ToJson(answer.tree.get());
      out << JsonText(all) << '\n';
      break;
    }
    case Format::Xml: {
      const Plist all(plist_new_dict());
      for (const Answer& answer : answers) {
        plist_dict_set_item(all.get(), answer.kind->name.c_str(), CopyOrEmpty(answer.tree.get()));
      }
      WriteXml(out, all.get());
      break;
    }
    case Format::Csv:
    case Format::Table:
      for (size_t i = 0; i < answers.size(); ++i) {
        const Answer& answer = answers[i];
        if (i) out << '\n';
        if (format == Format::Csv) {
          out << "# " << answer.kind->name << '\n';
        } else {
          const size_t records = RecordCount(answer.tree.get());
          out << answer.kind->name << ": " << records << (records == 1 ? " record\n" : " records\n");
        }
        WriteRows(out, format, answer);
      }
      break;
  }
}

}  // namespace yh
