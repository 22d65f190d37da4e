#include "index/SharedTexts.h"

std::string_view SharedTexts::Intern(std::string_view text) {
  if (text == last_) return last_;
  const auto found = known_.find(text);
  last_ = found != known_.end() ? *found : *known_.insert(arena_.Add(text)).first;
  return last_;
}
