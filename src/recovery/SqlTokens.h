#ifndef YH_RECOVERY_SQLTOKENS_H
#define YH_RECOVERY_SQLTOKENS_H

#include <string>
#include <string_view>
#include <vector>

// The words of the CREATE statements that sqlite_master keeps, as far as
// our parsers of them need.

std::string Upper(std::string_view text);

// A token of a statement: a word, a quoted name (unquoted), or one
// punctuation character. `quoted` keeps names from being taken as keywords.
struct Token {
  std::string text;
  bool quoted = false;
};

std::vector<Token> Tokenize(std::string_view sql);

bool IsKeyword(const Token& token, const char* keyword);

// The statement's top-level definitions, between its first parentheses;
// `after` receives the index of the closing one.
std::vector<std::vector<Token>> Definitions(const std::vector<Token>& tokens, size_t* after);

#endif
