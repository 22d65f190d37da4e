// The Safari history property list reader on arbitrary History.plist bytes
// in the sample backup. The first byte chooses: even, the rest is the file;
// odd, the rest grows a "WebHistoryDates" of any shape (binary or XML), its
// elements mostly dictionaries with the reader's keys holding any node type.
#include <fuzzer/FuzzedDataProvider.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "PlistShapes.h"
#include "SampleDevice.h"

namespace {

const std::vector<std::string> kEntryKeys = {"", "title", "lastVisitedDate", "visitCount", "WebHistoryDates"};

std::string GrownHistory(FuzzedDataProvider& bytes) {
  plist_t root = plist_new_dict();
  plist_t dates = nullptr;
  if (bytes.ConsumeBool()) {
    dates = plist_new_array();
    for (int n = bytes.ConsumeIntegralInRange<int>(0, 12); n > 0 && bytes.remaining_bytes(); --n) {
      plist_array_append_item(dates, bytes.ConsumeBool() ? yhfuzz::GrowDict(bytes, kEntryKeys, 2)
                                                         : yhfuzz::GrowPlist(bytes, kEntryKeys, 2));
    }
  } else {
    dates = yhfuzz::GrowPlist(bytes, kEntryKeys, 3);
  }
  plist_dict_set_item(root, "WebHistoryDates", dates);
  return yhfuzz::PlistFileBytes(root, bytes.ConsumeBool());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const yhfuzz::SampleDevice sample(yhtest::IndexKind::Mbdb);
  std::string file;
  if (size > 0 && data[0] % 2) {
    FuzzedDataProvider bytes(data + 1, size - 1);
    file = GrownHistory(bytes);
  } else if (size > 0) {
    file.assign(reinterpret_cast<const char*>(data + 1), size - 1);
  }
  const std::string stored = sample.Stored("HomeDomain", "Library/Safari/History.plist");
  yhfuzz::SetAside original(stored);
  yhtest::WriteFile(stored, file);
  sample.Ask({ContentSafariHistory});
  return 0;
}
