#ifndef YH_KINDS_CURRENT_CONTACT_H
#define YH_KINDS_CURRENT_CONTACT_H

#include <cstdint>
#include <string>
#include <vector>

#include "common/PackedTexts.h"
#include "kinds/Kind.h"
#include "kinds/current/PhoneDirectory.h"
#include "libYH.h"

namespace current {

// The address book as today's devices keep it, nothing lost: a structured
// value (a postal address) is one value with all its lines, every value of a
// repeated label is kept, and a value without a label is kept under the name
// of what it is. Also the directory that names the other parties of calls
// and messages, from every address book of the backup.
class Contact : public Kind {
 public:
  struct Person {
    int64_t id = 0;
    std::string name;
    // The PersonText texts (the birthday as a day), then each label and
    // value in row order.
    PackedTexts texts;
  };

  // An array of the people of the first address book (empty when none).
  plist_t FindContent(void* device, int flag) override;

  // The name of the person with this number or address, or NULL.
  const std::string* FindNameByPhone(const BackupDevice* device, const std::string& address);

 private:
  void Load(const BackupDevice* device);

  bool loaded_ = false;
  std::vector<std::vector<Person>> books_;  // one per address book, people by ascending id
  PhoneDirectory directory_;
};

}  // namespace current

#endif
