#ifndef YH_COMMON_SORTBYMOVING_H
#define YH_COMMON_SORTBYMOVING_H

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <vector>

// `items` in a stable order of `less`, each moved once at most: the order is
// found on the items' positions, so records of many texts are not moved at
// every step of the sort. Items already in order are handed back untouched.
template <class T, class Less>
std::vector<T> StableSortedByMoving(std::vector<T> items, Less less) {
  if (std::is_sorted(items.begin(), items.end(), less)) return items;
  std::vector<size_t> order(items.size());
  std::iota(order.begin(), order.end(), size_t{0});
  std::stable_sort(order.begin(), order.end(), [&](size_t a, size_t b) { return less(items[a], items[b]); });
  std::vector<T> sorted;
  sorted.reserve(items.size());
  for (size_t position : order) sorted.push_back(std::move(items[position]));
  return sorted;
}

#endif
