#ifndef YH_TOOL_KINDS_H
#define YH_TOOL_KINDS_H

#include <string>
#include <vector>

namespace yh {

// One content kind of the library.
struct Kind {
  int contentType;
  std::string name;
  // Media kinds name each stored file under this key ("" for other kinds);
  // its path in the backup is under "path" and its size under "size".
  std::string fileNameKey;
  // The keys of one record in the library's order, nested ones as
  // "parent.child": the columns of the flattened records.
  std::vector<std::string> columns;
  // Lists of a record kept in one cell of its rows rather than spread over
  // rows of their own.
  std::vector<std::string> inCells;
  // The keys that lead from a record down to the lists of its media records
  // (a chat's messages, then their attachments); none when each record is one.
  std::vector<std::string> mediaLists = {};
  // Records of other kinds may each name a picture, a file the library wrote
  // out of a database (a contact's), under this key ("" for none).
  std::string picturePathKey = {};

  bool IsMedia() const { return !fileNameKey.empty(); }
  // Whether an export copies files of the kind's records.
  bool HasFiles() const { return IsMedia() || !picturePathKey.empty(); }
};

// The name that selects every kind.
extern const char kAllKinds[];

// The fourteen kinds, in content-type order.
const std::vector<Kind>& Kinds();

// The kind named by its name or its content-type number; nullptr otherwise.
const Kind* FindKind(const std::string& text);

// Kinds named by `items` (names, numbers or "all"), each once, in the order
// given. Every item must have been checked with IsKindOrAll.
std::vector<const Kind*> SelectKinds(const std::vector<std::string>& items);

// True for "all" and anything FindKind knows.
bool IsKindOrAll(const std::string& text);

// "calls, contacts, ..." for help and error texts.
std::string KindNames();

}  // namespace yh

#endif
