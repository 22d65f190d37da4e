// GZDecompress (checked against its stepwise reading) and the note-store
// body extraction on arbitrary bytes. The last two bytes give an output
// capacity for a direct GZDecompress call; the rest is inflated directly and
// then, as the ZDATA of a note-store row in the sample backup, read by the
// notes extractor.
#include <fuzzer/FuzzedDataProvider.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "RowsInput.h"
#include "SampleDevice.h"
#include "common/GZip.h"

namespace {

std::vector<yhfuzz::TableInput> NoteStore(const std::string& data) {
  const yhfuzz::Value one{yhfuzz::Value::Integer, 1, 0, ""};
  const yhfuzz::Value date{yhfuzz::Value::Integer, 410227200, 0, ""};
  const yhfuzz::Value title{yhfuzz::Value::Text, 0, 0, "note"};
  const yhfuzz::Value blob{yhfuzz::Value::Blob, 0, 0, data};
  return {{"ZICCLOUDSYNCINGOBJECT",
           {"ZCREATIONDATE", "ZMODIFICATIONDATE1", "ZTITLE1", "ZNOTEDATA"},
           {{date, date, title, one}}},
          {"ZICNOTEDATA", {"Z_PK", "ZDATA"}, {{one, blob}}}};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const yhfuzz::SampleDevice sample(yhtest::IndexKind::ManifestDb);
  FuzzedDataProvider bytes(data, size);
  const unsigned int capacity = bytes.ConsumeIntegralInRange<unsigned int>(0, 4096);
  std::vector<unsigned char> source = bytes.ConsumeRemainingBytes<unsigned char>();

  std::vector<unsigned char> out(capacity);
  unsigned int length = capacity;
  const int status = GZDecompress(source.data(), static_cast<unsigned int>(source.size()), out.data(), &length);
  if (length > capacity || (status != 0 && length != capacity)) std::abort();
  // Reading the input at once must answer as reading it byte by byte does.
  std::vector<unsigned char> stepwise(capacity);
  unsigned int stepwiseLength = capacity;
  const int stepwiseStatus =
      GZDecompressStepwise(source.data(), static_cast<unsigned int>(source.size()), stepwise.data(), &stepwiseLength);
  if (stepwiseStatus != status || stepwiseLength != length || stepwise != out) std::abort();

  const std::string store = sample.Stored("AppDomainGroup-group.com.apple.notes", "NoteStore.sqlite");
  yhfuzz::SetAside original(store);
  yhfuzz::WriteRows(store, NoteStore(std::string(source.begin(), source.end())));
  sample.Ask({ContentNote});
  return 0;
}
