// The Manifest.mbdb reader on arbitrary bytes, in place of the index of the
// sample backup, so that records naming the sample's stored files are kept
// and every content type is then asked of what was read.
#include <cstddef>
#include <cstdint>
#include <string>

#include "SampleDevice.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const yhfuzz::SampleDevice sample(yhtest::IndexKind::Mbdb);
  const std::string index = sample.Folder() + "Manifest.mbdb";
  yhfuzz::SetAside original(index);
  yhtest::WriteFile(index, std::string(reinterpret_cast<const char*>(data), size));
  sample.Analyze();
  sample.AskEverything();
  return 0;
}
