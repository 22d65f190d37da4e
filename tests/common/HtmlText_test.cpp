#include "common/HtmlText.h"

#include <gtest/gtest.h>

namespace {

TEST(HtmlText, BlockElementsAndBreaksStartLines) {
  EXPECT_EQ(HtmlToText("Shopping list<div>Milk</div><div>Eggs</div>"), "Shopping list\nMilk\nEggs");
  EXPECT_EQ(HtmlToText("Title<div><br></div><div>after a blank line</div>"), "Title\n\nafter a blank line");
  EXPECT_EQ(HtmlToText("one<br>two<BR/>three<br />"), "one\ntwo\nthree");
  EXPECT_EQ(HtmlToText("<p>a</p><p>b</p><ul><li>c</li><li>d</li></ul>tail"), "a\nb\nc\nd\ntail");
  EXPECT_EQ(HtmlToText("<DIV CLASS=\"x\">upper</DIV>"), "upper");
}

TEST(HtmlText, EntitiesAreDecodedAndUnknownOnesKept) {
  EXPECT_EQ(HtmlToText("a &amp; b &lt;c&gt; &quot;d&quot; &#39;e&#39; &#x1F600;"), "a & b <c> \"d\" 'e' \xF0\x9F\x98\x80");
  EXPECT_EQ(HtmlToText("x&nbsp;y"), "x\xC2\xA0y");
  EXPECT_EQ(HtmlToText("AT&T &unknown; &#; &#xZZ; &#0; & alone"), "AT&T &unknown; &#; &#xZZ; \xEF\xBF\xBD & alone");
  EXPECT_EQ(HtmlToText("&#xD800;&#1114112;"), "\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(HtmlText, OtherTagsCommentsAndHiddenContentAreDropped) {
  EXPECT_EQ(HtmlToText("<b>bold</b> <span style=\"x\">and</span> <a href=\"y\">link</a>"), "bold and link");
  EXPECT_EQ(HtmlToText("<head><title>t</title><style>p{}</style></head>text<!-- note -->"), "text");
  EXPECT_EQ(HtmlToText("<script>alert(1)</script>safe"), "safe");
}

TEST(HtmlText, PlainTextAndDamagedMarkupStayReadable) {
  EXPECT_EQ(HtmlToText("plain\ntext\n"), "plain\ntext\n");
  EXPECT_EQ(HtmlToText("2 < 3 and 4 > 1"), "2 < 3 and 4 > 1");
  EXPECT_EQ(HtmlToText("cut <div"), "cut ");
  EXPECT_EQ(HtmlToText("<!-- never closed"), "");
  EXPECT_EQ(HtmlToText(""), "");
}

}  // namespace
