#include "recovery/SqlTokens.h"

#include <cctype>

std::string Upper(std::string_view text) {
  std::string upper(text);
  for (char& c : upper) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return upper;
}

std::vector<Token> Tokenize(std::string_view sql) {
  std::vector<Token> tokens;
  size_t i = 0;
  while (i < sql.size()) {
    const char c = sql[i];
    if (std::isspace(static_cast<unsigned char>(c))) {
      ++i;
    } else if (c == '-' && i + 1 < sql.size() && sql[i + 1] == '-') {
      while (i < sql.size() && sql[i] != '\n') ++i;
    } else if (c == '/' && i + 1 < sql.size() && sql[i + 1] == '*') {
      const size_t close = sql.find("*/", i + 2);
      i = close == std::string_view::npos ? sql.size() : close + 2;
    } else if (c == '"' || c == '\'' || c == '`' || c == '[') {
      const char close = c == '[' ? ']' : c;
      Token token{"", true};
      ++i;
      while (i < sql.size()) {
        if (sql[i] == close) {
          if (close != ']' && i + 1 < sql.size() && sql[i + 1] == close) {
            token.text.push_back(close);
            i += 2;
            continue;
          }
          ++i;
          break;
        }
        token.text.push_back(sql[i++]);
      }
      tokens.push_back(std::move(token));
    } else if (std::isalnum(static_cast<unsigned char>(c)) || c == '_' || static_cast<unsigned char>(c) >= 0x80) {
      const size_t start = i;
      while (i < sql.size() && (std::isalnum(static_cast<unsigned char>(sql[i])) || sql[i] == '_' || sql[i] == '$' ||
                                static_cast<unsigned char>(sql[i]) >= 0x80)) {
        ++i;
      }
      tokens.push_back({std::string(sql.substr(start, i - start)), false});
    } else {
      tokens.push_back({std::string(1, c), false});
      ++i;
    }
  }
  return tokens;
}

bool IsKeyword(const Token& token, const char* keyword) { return !token.quoted && Upper(token.text) == keyword; }

std::vector<std::vector<Token>> Definitions(const std::vector<Token>& tokens, size_t* after) {
  std::vector<std::vector<Token>> parts;
  size_t i = 0;
  while (i < tokens.size() && !(tokens[i].text == "(" && !tokens[i].quoted)) ++i;
  if (i == tokens.size()) return parts;
  parts.emplace_back();
  int depth = 0;
  for (++i; i < tokens.size(); ++i) {
    const Token& token = tokens[i];
    if (!token.quoted && token.text == "(") ++depth;
    if (!token.quoted && token.text == ")" && depth-- == 0) break;
    if (!token.quoted && token.text == "," && depth == 0) {
      parts.emplace_back();
    } else {
      parts.back().push_back(token);
    }
  }
  *after = i;
  return parts;
}

