#ifndef YH_COMMON_PHONEHELPERS_H
#define YH_COMMON_PHONEHELPERS_H

// 0 for the characters a phone number may hold ("0"-"9", "#", "*", "+", ",",
// ";"), 1 for anything else.
int isNotPhoneNumberChar(int c);
// 1 for an empty text, or when every byte is a value 0..9 or the separator.
int IsPhoneFormat(const char* text, char separator);

#endif
