#ifndef YH_COMMON_COLUMNHELPERS_H
#define YH_COMMON_COLUMNHELPERS_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// Database columns as the row callbacks receive them: text or NULL.
int32_t GetZeroIntIsNull(const char* text);
int32_t GetZeroLongIsNull(const char* text);
std::string GetEmptyStringIsNull(const char* text);
// The same text without a copy; it lives as long as the row.
std::string_view GetEmptyViewIsNull(const char* text);
// The finite number a whole text holds; none for NULL, "" or anything else.
std::optional<double> FiniteRealOf(const char* text);

#endif
