#include "kinds/current/PhoneDirectory.h"

#include <algorithm>

#include "common/TextHelpers.h"

namespace {

bool IsAddress(const std::string& text) { return text.find('@') != std::string::npos; }

bool EndsWith(const std::string& text, const std::string& tail) {
  return text.size() >= tail.size() && text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
}

}  // namespace

std::string PhoneDirectory::NumberKey(const std::string& text) {
  std::string digits;
  for (const char c : text) {
    if (c >= '0' && c <= '9' && !(digits.empty() && c == '0')) digits += c;
  }
  return digits;
}

void PhoneDirectory::Add(const std::string& value, const std::string& name) {
  if (IsAddress(value)) {
    const size_t index = names_.size();
    if (addresses_.emplace(AsciiLower(value), index).second) names_.push_back(name);
    return;
  }
  std::string digits = NumberKey(value);
  if (digits.empty()) return;
  const std::string tail = digits.size() > kTail ? digits.substr(digits.size() - kTail) : digits;
  numbers_[tail].push_back({std::move(digits), names_.size()});
  names_.push_back(name);
}

const std::string* PhoneDirectory::Find(const std::string& address) const {
  if (IsAddress(address)) {
    const auto hit = addresses_.find(AsciiLower(address));
    return hit == addresses_.end() ? nullptr : &names_[hit->second];
  }
  const std::string digits = NumberKey(address);
  if (digits.empty()) return nullptr;
  const std::string tail = digits.size() > kTail ? digits.substr(digits.size() - kTail) : digits;
  const auto candidates = numbers_.find(tail);
  if (candidates == numbers_.end()) return nullptr;
  for (const Entry& entry : candidates->second) {
    const bool whole = entry.digits == digits;
    const bool longEnough = std::min(entry.digits.size(), digits.size()) >= kTail;
    if (whole || (longEnough && (EndsWith(entry.digits, digits) || EndsWith(digits, entry.digits)))) {
      return &names_[entry.name];
    }
  }
  return nullptr;
}
