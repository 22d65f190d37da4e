#include "ExportTable.h"

#include <utility>

#include "TextTable.h"

namespace yh {

void WriteExportTable(std::ostream& out, const std::vector<KindExport>& results) {
  Rows rows{{"kind", "records", "files", "bytes", "skipped", "missing"}, {}};
  KindExport total{nullptr};
  for (const KindExport& result : results) {
    total.records += result.records;
    total.files += result.files;
    total.bytes += result.bytes;
    total.skipped += result.skipped;
    total.missing += result.missing;
    if (!result.kind->HasFiles()) {
      rows.cells.push_back({result.kind->name, std::to_string(result.records), "-", "-", "-", "-"});
      continue;
    }
    rows.cells.push_back({result.kind->name, std::to_string(result.records), std::to_string(result.files),
                          std::to_string(result.bytes), std::to_string(result.skipped),
                          std::to_string(result.missing)});
  }
  rows.cells.push_back({"total", std::to_string(total.records), std::to_string(total.files),
                        std::to_string(total.bytes), std::to_string(total.skipped), std::to_string(total.missing)});
  WriteTable(out, std::move(rows));
}

}  // namespace yh
