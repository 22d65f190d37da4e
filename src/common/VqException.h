#ifndef YH_COMMON_VQEXCEPTION_H
#define YH_COMMON_VQEXCEPTION_H

// Hooks called where an object is found dead or NULL. They return at once:
// nothing in the library throws on purpose.
class VqException {
 public:
  static void ThrowException();
  static void ThrowObjectNotAliveException();
  static void ThrowObjectIsNullException();
};

#endif
