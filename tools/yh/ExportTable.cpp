#include "ExportTable.h"

#include <algorithm>
#include <utility>

#include "TextTable.h"

namespace yh {
namespace {

std::vector<std::string> Cells(const KindExport& result, const std::string& name, bool deleted) {
  std::vector<std::string> cells{name, std::to_string(result.records)};
  if (deleted) cells.push_back(std::to_string(result.deleted.value_or(0)));
  for (const uint64_t count : {uint64_t{result.files}, result.bytes, uint64_t{result.skipped}, uint64_t{result.missing}}) {
    cells.push_back(!result.kind || result.kind->HasFiles() ? std::to_string(count) : "-");
  }
  return cells;
}

}  // namespace

void WriteExportTable(std::ostream& out, const std::vector<KindExport>& results) {
  const bool deleted = std::any_of(results.begin(), results.end(), [](const KindExport& r) { return r.deleted; });
  Rows rows{{"kind", "records"}, {}};
  if (deleted) rows.columns.push_back("deleted");
  for (const char* column : {"files", "bytes", "skipped", "missing"}) rows.columns.push_back(column);
  KindExport total{nullptr};
  for (const KindExport& result : results) {
    total.records += result.records;
    total.deleted = total.deleted.value_or(0) + result.deleted.value_or(0);
    total.files += result.files;
    total.bytes += result.bytes;
    total.skipped += result.skipped;
    total.missing += result.missing;
    rows.cells.push_back(Cells(result, result.kind->name, deleted));
  }
  rows.cells.push_back(Cells(total, "total", deleted));
  WriteTable(out, std::move(rows));
}

}  // namespace yh
