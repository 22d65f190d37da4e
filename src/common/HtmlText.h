#ifndef YH_COMMON_HTMLTEXT_H
#define YH_COMMON_HTMLTEXT_H

#include <string>

// The plain text of the HTML that notes of iOS 4 to 8 store
// ("Shopping list<div>Milk</div><div><br></div>"): each block element
// (div, p, li, headings, table rows...) and each <br> starts a line, entities
// are decoded (named ones of HTML's core set, decimal and hexadecimal ones;
// an unknown or malformed one stays as written), other tags are dropped, as
// are the contents of style, script and head, and comments. Line breaks at
// the end are removed. Text without any tag comes back as it is.
std::string HtmlToText(const std::string& html);

#endif
