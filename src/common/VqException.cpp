#include "common/VqException.h"

// Inert in every build: a failed check must never change the outcome of the
// access that follows it.
void VqException::ThrowException() {}

void VqException::ThrowObjectNotAliveException() {}

void VqException::ThrowObjectIsNullException() {}
