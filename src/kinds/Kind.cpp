#include "kinds/Kind.h"

namespace {

// Appends every record to one array.
class ArraySink : public RecordSink {
 public:
  ArraySink() : array_(plist_new_array()) {}
  ~ArraySink() override { plist_free(array_); }
  ArraySink(const ArraySink&) = delete;
  ArraySink& operator=(const ArraySink&) = delete;

  plist_t Release() {
    plist_t array = array_;
    array_ = nullptr;
    return array;
  }

 protected:
  bool Receive(plist_t dict) override {
    plist_array_append_item(array_, dict);
    return true;
  }

 private:
  plist_t array_;
};

}  // namespace

plist_t Kind::Gather(bool (Kind::*hand)(void*, int, RecordSink&), void* device, int flag) {
  ArraySink sink;
  return (this->*hand)(device, flag, sink) ? sink.Release() : nullptr;
}
