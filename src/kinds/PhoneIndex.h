#ifndef YH_KINDS_PHONEINDEX_H
#define YH_KINDS_PHONEINDEX_H

#include <string>
#include <unordered_map>

// The name of the first person who answers to each number, so that naming a
// conversation or a call takes one lookup instead of a walk over every
// property of every person.
class PhoneIndex {
 public:
  // Keeps `name` for `number` unless a name is kept for it already. The
  // name must outlive the index.
  void Add(const std::string& number, const std::string& name);
  // The name kept for exactly `number`, or NULL.
  const std::string* Find(const std::string& number) const;

 private:
  std::unordered_map<std::string, const std::string*> names_;
};

#endif
