#ifndef YH_KINDS_CURRENT_PHONEDIRECTORY_H
#define YH_KINDS_CURRENT_PHONEDIRECTORY_H

#include <string>
#include <unordered_map>
#include <vector>

// Names people by their phone numbers and e-mail addresses. Numbers are
// compared by their digits, not their punctuation: "+1 (617) 555-0199",
// "16175550199" and "(617) 555-0199" are one number. Leading zeros (a trunk
// or international prefix) are dropped, and a number of at least seven
// digits matches another that ends with it, so that a number stored with its
// country code matches the same number dialled without. Shorter numbers
// (short codes) match only whole. E-mail addresses match without regard to
// case. When several people match, the one added first wins.
class PhoneDirectory {
 public:
  // Adds one stored value (a number or an address) of the named person.
  void Add(const std::string& value, const std::string& name);

  // The name of the first person whose value matches `address`, or NULL. The
  // text belongs to the directory.
  const std::string* Find(const std::string& address) const;

  // The digits that identify a number: digits only, leading zeros dropped.
  static std::string NumberKey(const std::string& text);

 private:
  struct Entry {
    std::string digits;
    size_t name;
  };
  static constexpr size_t kTail = 7;

  std::vector<std::string> names_;
  // By the last seven digits (or all of a shorter number), in the order added.
  std::unordered_map<std::string, std::vector<Entry>> numbers_;
  std::unordered_map<std::string, size_t> addresses_;
};

#endif
