// Every row callback, through real SQLite: the input (see RowsInput.h) picks
// one database of the sample backups, or the Manifest.db index, and gives its
// tables any columns (known or not, so that queries fail and older ones are
// tried) and rows of NULLs, integers, reals, texts and BLOBs. The database
// takes the place of the sample's, the backup is analysed afresh and the
// content types that read it are asked.
#include <cstddef>
#include <cstdint>
#include <string>

#include "RowsInput.h"
#include "SampleDevice.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const yhfuzz::SampleDevice mbdb(yhtest::IndexKind::Mbdb);
  static const yhfuzz::SampleDevice manifestDb(yhtest::IndexKind::ManifestDb);
  const yhfuzz::RowsInput input = yhfuzz::DecodeRows(data, size);
  const yhfuzz::RowTarget& target = yhfuzz::RowTargets()[input.target];
  const yhfuzz::SampleDevice& sample = target.kind == yhtest::IndexKind::Mbdb ? mbdb : manifestDb;
  const std::string path =
      target.path.empty() ? sample.Folder() + "Manifest.db" : sample.Stored(target.domain, target.path);
  yhfuzz::SetAside original(path);
  yhfuzz::WriteRows(path, input.tables);
  sample.Analyze();
  sample.Ask(target.feeds);
  return 0;
}
