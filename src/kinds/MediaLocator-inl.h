#ifndef YH_KINDS_MEDIALOCATOR_INL_H
#define YH_KINDS_MEDIALOCATOR_INL_H

template <class Visitor>
void MediaLocator::ForEachContaining(const std::string& needle, Visitor visit) const {
  const Catalog& records = Records();
  if (!records.paths) return;  // no index reader: nothing to search
  records.paths->ForEachContaining(needle, [&](size_t position) { return visit(records.file(position)); });
}

#endif
