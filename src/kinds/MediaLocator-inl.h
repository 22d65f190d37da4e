#ifndef YH_KINDS_MEDIALOCATOR_INL_H
#define YH_KINDS_MEDIALOCATOR_INL_H

template <class Visitor>
void MediaLocator::ForEachContaining(const std::string& needle, Visitor visit) const {
  if (!reader_) return;  // no index reader: nothing to search
  reader_->GetPathIndex().ForEachContaining(
      needle, [&](size_t position) { return visit(ReadableFileAt(device_, *reader_, position)); });
}

#endif
