#ifndef YH_INDEX_PATHINDEX_INL_H
#define YH_INDEX_PATHINDEX_INL_H

template <class Visitor>
void PathIndex::ForEachContaining(std::string_view needle, Visitor visit) const {
  const auto contains = [&](size_t position) { return texts_[position].find(needle) != std::string_view::npos; };
  if (needle.size() < kShortestIndexed) {
    for (size_t position = 0; position < texts_.size(); ++position) {
      if (contains(position) && !visit(position)) return;
    }
    return;
  }
  // The lists merged in ascending order, each text once.
  std::array<List, kStep> lists = CandidateLists(needle);
  for (;;) {
    const uint32_t* least = nullptr;
    for (const List& list : lists) {
      if (list.first != list.second && (!least || *list.first < *least)) least = list.first;
    }
    if (!least) return;
    const uint32_t position = *least;
    for (List& list : lists) {
      while (list.first != list.second && *list.first == position) ++list.first;
    }
    if (contains(position) && !visit(static_cast<size_t>(position))) return;
  }
}

#endif
