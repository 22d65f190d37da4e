#ifndef YH_KINDS_CALL_H
#define YH_KINDS_CALL_H

#include "common/PackedTexts.h"
#include "common/VqBase.h"
#include "kinds/CallTexts.h"

// One call of the call log: its CallText texts, empty until set. A large log
// keeps tens of thousands, so the texts share one block.
class Call : public VqBase {
 public:
  PackedTexts texts;
};

#endif
