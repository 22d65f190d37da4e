#include "index/SharedTexts.h"

const char* SharedTexts::Intern(std::string_view text) {
  if (last_.data() && text == last_) return last_.data();
  const auto found = known_.find(text);
  if (found != known_.end()) {
    last_ = *found;
  } else {
    const std::string terminated(text);
    last_ = *known_.insert(arena_.Add({terminated.c_str(), terminated.size() + 1}).substr(0, text.size())).first;
  }
  return last_.data();
}
