#include "kinds/PhoneIndex.h"

void PhoneIndex::Add(const std::string& number, const std::string& name) { names_.emplace(number, &name); }

const std::string* PhoneIndex::Find(const std::string& number) const {
  const auto hit = names_.find(number);
  return hit == names_.end() ? nullptr : hit->second;
}
