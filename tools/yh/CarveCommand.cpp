#include "Commands.h"
#include "Failure.h"
#include "PlistEntries.h"
#include "TerminalText.h"

namespace yh {
namespace {

// For CSV and tables: each row's "values" entries become keys of the row
// itself ("values.column"), one line per row instead of one per value.
void LiftValues(plist_t rows) {
  const uint32_t count = plist_array_get_size(rows);
  for (uint32_t i = 0; i < count; ++i) {
    plist_t row = plist_array_get_item(rows, i);
    plist_t values = plist_dict_get_item(row, "values");
    if (!values) continue;
    ForEachEntry(values, [&](std::string_view key, plist_t value) {
      plist_dict_set_item(row, ("values." + std::string(key)).c_str(), plist_copy(value));
    });
    plist_dict_remove_item(row, "values");
  }
}

}  // namespace

int RunCarve(const CarveOptions& options, std::ostream& out) {
  // The rows as a kind of their own: these columns first, then each table's
  // values.
  static const Kind kRows{-1, "rows", "", {"table", "source", "status", "rowid", "file", "offset"}, {}};
  Plist rows(CarveDatabaseFile(options.database.c_str(), options.wal.empty() ? nullptr : options.wal.c_str(),
                               options.journal.empty() ? nullptr : options.journal.c_str(), options.all ? 1 : 0));
  if (!rows) throw Failure("cannot read " + Printable(options.database) + ": no such file");
  if (options.format != Format::Json) LiftValues(rows.get());
  WriteAnswer(out, options.format, {&kRows, std::move(rows)});
  return 0;
}

}  // namespace yh
