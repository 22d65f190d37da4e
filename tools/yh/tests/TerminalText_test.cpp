#include "TerminalText.h"

#include <gtest/gtest.h>

namespace yh {
namespace {

TEST(YhPrintable, EscapesControlCharacters) {
  EXPECT_EQ(Printable("plain ’text’"), "plain ’text’");
  EXPECT_EQ(Printable("a\x1b[2Jb\n\x7f"), "a\\x1B[2Jb\\x0A\\x7F");
}

TEST(YhDisplayWidth, CountsCharactersNotBytes) {
  EXPECT_EQ(DisplayWidth("abc"), 3u);
  EXPECT_EQ(DisplayWidth("Ada’s"), 5u);
}

TEST(YhCell, CutsTheMiddleOfLongText) {
  EXPECT_EQ(Cell("short", 10), "short");
  EXPECT_EQ(Cell("0123456789", 10), "0123456789");
  EXPECT_EQ(Cell("0123456789A", 10), "01234…789A");
  EXPECT_EQ(Cell("ééééééé", 4), "éé…é");
  EXPECT_EQ(Cell("tab\there", 20), "tab here");
  EXPECT_EQ(Cell("abc", 0), "");
}

// The width CutCell gives is that of the cell it leaves, cut or not, also
// for text that starts inside a character or holds control characters.
TEST(YhCell, CutInPlaceGivesTheShownWidth) {
  for (const std::string& text : {std::string("short"), std::string("\x80\x80" "abc"), std::string("tab\there\x7F"),
                                   std::string("0123456789ABCDEF"), std::string("\x80ééééééé")}) {
    for (const size_t width : {size_t{0}, size_t{4}, size_t{10}}) {
      std::string cell = text;
      const size_t shown = CutCell(cell, width);
      EXPECT_EQ(cell, Cell(text, width)) << text << " " << width;
      EXPECT_EQ(shown, DisplayWidth(cell)) << text << " " << width;
    }
  }
}

}  // namespace
}  // namespace yh
