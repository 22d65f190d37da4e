#ifndef YH_COMMON_COLUMNHELPERS_H
#define YH_COMMON_COLUMNHELPERS_H

#include <cstdint>
#include <string>

// Database columns as the row callbacks receive them: text or NULL.
int32_t GetZeroIntIsNull(const char* text);
int32_t GetZeroLongIsNull(const char* text);
std::string GetEmptyStringIsNull(const char* text);

#endif
