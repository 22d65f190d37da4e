#ifndef YH_TESTS_SUPPORT_FORENSICANSWERKEY_H
#define YH_TESTS_SUPPORT_FORENSICANSWERKEY_H

#include <string>
#include <vector>

namespace yhtest {

// One row of an answer key of the SQLite forensic corpus: its table, its
// column contents in order (XML entities resolved) and whether it was deleted.
struct AnswerRow {
  std::string table;
  std::vector<std::string> contents;
  bool deleted = false;
};

// The rows of an answer key's XML text, read leniently (two keys of the
// corpus are not well-formed XML).
std::vector<AnswerRow> ReadAnswerKey(const std::string& xml);

}  // namespace yhtest

#endif
