#include "common/HtmlText.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <utility>

namespace {

const char* const kBlocks[] = {"div", "p", "li", "ul", "ol", "h1", "h2", "h3", "h4", "h5", "h6", "tr",
                               "blockquote", "pre", "table", "section", "article", "header", "footer", "dl",
                               "dt", "dd", "hr", "address", "body", "html"};
// Elements whose content is no text of the note.
const char* const kHidden[] = {"style", "script", "head", "title"};

struct Entity {
  const char* name;
  const char* text;
};
const Entity kEntities[] = {{"amp", "&"},       {"lt", "<"},        {"gt", ">"},       {"quot", "\""},
                            {"apos", "'"},      {"nbsp", "\xC2\xA0"}, {"copy", "\xC2\xA9"}, {"reg", "\xC2\xAE"},
                            {"hellip", "\xE2\x80\xA6"}, {"ndash", "\xE2\x80\x93"}, {"mdash", "\xE2\x80\x94"},
                            {"lsquo", "\xE2\x80\x98"}, {"rsquo", "\xE2\x80\x99"}, {"ldquo", "\xE2\x80\x9C"},
                            {"rdquo", "\xE2\x80\x9D"}, {"bull", "\xE2\x80\xA2"}, {"euro", "\xE2\x82\xAC"}};

bool IsOneOf(const std::string& name, const char* const* names, size_t count) {
  return std::any_of(names, names + count, [&](const char* candidate) { return name == candidate; });
}

std::string Utf8(uint32_t code) {
  // Surrogates, zero and values beyond Unicode are no characters.
  if (code == 0 || (code >= 0xD800 && code <= 0xDFFF) || code > 0x10FFFF) return "\xEF\xBF\xBD";
  std::string out;
  if (code < 0x80) {
    out += static_cast<char>(code);
  } else if (code < 0x800) {
    out += static_cast<char>(0xC0 | (code >> 6));
    out += static_cast<char>(0x80 | (code & 0x3F));
  } else if (code < 0x10000) {
    out += static_cast<char>(0xE0 | (code >> 12));
    out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (code & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (code >> 18));
    out += static_cast<char>(0x80 | ((code >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (code & 0x3F));
  }
  return out;
}

// The text of the entity at `at` (which holds '&') and its length; a lone
// '&' when it is none.
std::pair<std::string, size_t> Decode(const std::string& html, size_t at) {
  const size_t end = html.find(';', at);
  if (end == std::string::npos || end - at > 12) return {"&", 1};
  const std::string name = html.substr(at + 1, end - at - 1);
  if (name.size() > 1 && name[0] == '#') {
    const bool hex = name[1] == 'x' || name[1] == 'X';
    const std::string digits = name.substr(hex ? 2 : 1);
    if (digits.empty() || !std::all_of(digits.begin(), digits.end(), [hex](unsigned char c) {
          return hex ? std::isxdigit(c) != 0 : std::isdigit(c) != 0;
        })) {
      return {"&", 1};
    }
    return {Utf8(static_cast<uint32_t>(std::min(std::strtoul(digits.c_str(), nullptr, hex ? 16 : 10), 0x110000UL))),
            end - at + 1};
  }
  for (const Entity& entity : kEntities) {
    if (name == entity.name) return {entity.text, end - at + 1};
  }
  return {"&", 1};
}

// The lower-case name of the tag that starts at `at` (after '<' and any '/').
std::string TagName(const std::string& html, size_t at) {
  std::string name;
  for (; at < html.size() && std::isalnum(static_cast<unsigned char>(html[at])); ++at) {
    name += static_cast<char>(std::tolower(static_cast<unsigned char>(html[at])));
  }
  return name;
}

void StartLine(std::string& text) {
  if (!text.empty() && text.back() != '\n') text += '\n';
}

}  // namespace

std::string HtmlToText(const std::string& html) {
  if (html.find('<') == std::string::npos && html.find('&') == std::string::npos) return html;
  std::string text;
  std::string hiddenUntil;  // the closing tag that ends hidden content
  for (size_t at = 0; at < html.size();) {
    const char c = html[at];
    if (c == '<' && html.compare(at, 4, "<!--") == 0) {
      const size_t end = html.find("-->", at + 4);
      at = end == std::string::npos ? html.size() : end + 3;
      continue;
    }
    if (c == '<' && at + 1 < html.size() &&
        (std::isalpha(static_cast<unsigned char>(html[at + 1])) || html[at + 1] == '/' || html[at + 1] == '!')) {
      const size_t end = html.find('>', at);
      if (end == std::string::npos) break;  // a tag cut short ends the text
      const bool closing = html[at + 1] == '/';
      const std::string name = TagName(html, at + (closing ? 2 : 1));
      at = end + 1;
      if (!hiddenUntil.empty()) {
        if (closing && name == hiddenUntil) hiddenUntil.clear();
        continue;
      }
      if (!closing && IsOneOf(name, kHidden, std::size(kHidden))) {
        hiddenUntil = name;
      } else if (name == "br") {
        text += '\n';
      } else if (IsOneOf(name, kBlocks, std::size(kBlocks))) {
        StartLine(text);
      }
      continue;
    }
    if (!hiddenUntil.empty()) {
      ++at;
      continue;
    }
    if (c == '&') {
      const auto [decoded, length] = Decode(html, at);
      text += decoded;
      at += length;
      continue;
    }
    text += c;
    ++at;
  }
  while (!text.empty() && text.back() == '\n') text.pop_back();
  return text;
}
