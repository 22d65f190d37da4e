#include "support/BackupBuilder.h"

namespace yhtest {
namespace {

void PutNumber(uint64_t value, int width, std::string* out) {
  for (int shift = (width - 1) * 8; shift >= 0; shift -= 8) out->push_back(static_cast<char>(value >> shift & 0xFF));
}

void PutText(const std::string& text, std::string* out) {
  PutNumber(text.empty() ? 0xFFFF : text.size(), 2, out);
  *out += text;
}

}  // namespace

std::string MbdbSignature() { return std::string("mbdb\x05\x00", 6); }

std::string MbdbRecord::Bytes() const {
  std::string out;
  PutText(domain, &out);
  PutText(path, &out);
  PutText(linkTarget, &out);
  PutText(dataHash, &out);
  PutText(encryptionKey, &out);
  PutNumber(mode, 2, &out);
  PutNumber(inode, 8, &out);
  PutNumber(userId, 4, &out);
  PutNumber(groupId, 4, &out);
  PutNumber(modified, 4, &out);
  PutNumber(accessed, 4, &out);
  PutNumber(changed, 4, &out);
  PutNumber(static_cast<uint64_t>(size), 8, &out);
  PutNumber(protectionClass, 1, &out);
  PutNumber(properties.size(), 1, &out);
  for (const auto& [name, value] : properties) {
    PutText(name, &out);
    PutText(value, &out);
  }
  return out;
}

}  // namespace yhtest
