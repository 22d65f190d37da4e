#ifndef YH_INDEX_RECORDINDEX_H
#define YH_INDEX_RECORDINDEX_H

#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "index/IndexReader.h"
#include "index/PathIndex.h"
#include "index/PathTable.h"

// What both readers keep alike: their records in index order, the path map
// and the path index over them, seen through IndexReader. `Path` is the
// record's device path.
template <class Record, std::string_view (Record::*Path)() const>
class RecordIndex : public IndexReader {
 public:
  using ContentList = std::vector<Record*>;
  using PathMap = PathTable<Record>;

  ContentList* GetContentList() { return &contentList_; }
  PathMap* GetQueryPathKeyMap() { return &pathMap_; }

  size_t RecordCount() const override { return contentList_.size(); }
  std::string_view DomainAt(size_t position) const override { return contentList_[position]->domain(); }
  std::string_view PathAt(size_t position) const override { return (contentList_[position]->*Path)(); }
  Folder::Entry StoredAt(size_t position) const override { return contentList_[position]->stored(); }
  std::optional<size_t> MappedAt(std::string_view path) const override { return pathMap_.PositionOf(path); }
  bool Repeated(std::string_view path) const override { return pathMap_.Repeated(path); }

  const PathIndex& GetPathIndex() override {
    if (!pathIndex_) pathIndex_ = IndexPathsOf(contentList_, Path);
    return *pathIndex_;
  }

 protected:
  const Record& RecordAt(size_t position) const { return *contentList_[position]; }
  void Keep(Record* record) { contentList_.push_back(record); }
  // Once, sized for every kept record. A later record of the same path
  // takes its place, as it would have record by record; records kept
  // before a failed read are mapped too.
  void MapPaths() { pathMap_.Fill(contentList_, Path); }

 private:
  ContentList contentList_;
  PathMap pathMap_;
  std::unique_ptr<const PathIndex> pathIndex_;
};

#endif
