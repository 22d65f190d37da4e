#ifndef YH_COMMON_APPENDMOVING_H
#define YH_COMMON_APPENDMOVING_H

#include <iterator>
#include <utility>
#include <vector>

// Moves every item of `from` to the end of `to`, in order: an empty `to`
// takes `from`'s block as it is, any other makes room for all at once.
template <class T>
void AppendMoving(std::vector<T>& to, std::vector<T> from) {
  if (to.empty()) {
    to = std::move(from);
    return;
  }
  to.reserve(to.size() + from.size());
  std::move(from.begin(), from.end(), std::back_inserter(to));
}

#endif
