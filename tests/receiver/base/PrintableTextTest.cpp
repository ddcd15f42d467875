// Stored text on a terminal.
#include "base/PrintableText.hpp"

#include <gtest/gtest.h>

namespace mireth::receiver {
namespace {

TEST(PrintableText, LeavesPlainTextOfAnyScriptAlone) {
    EXPECT_EQ(printableText("Kasse \xC3\xA4 \xE2\x82\xAC \xF0\x9F\x98\x80 \\"),
              "Kasse \xC3\xA4 \xE2\x82\xAC \xF0\x9F\x98\x80 \\");
}

TEST(PrintableText, ShowsControlCharactersAndDirectionOverrides) {
    EXPECT_EQ(printableText("a\n\t\r\x1B[2J\x7F"), "a\\n\\t\\r\\u{1B}[2J\\u{7F}");
    EXPECT_EQ(printableText(std::string_view("\0", 1)), "\\u{0}");
    EXPECT_EQ(printableText("\xC2\x9B\xE2\x80\xAE\xE2\x80\xA8"), "\\u{9B}\\u{202E}\\u{2028}");
}

TEST(PrintableText, ShowsBytesThatAreNoText) {
    EXPECT_EQ(printableText("\xFF\xC0\x80\xED\xA0\x80\xF5\xE2\x82"),
              "\\x{FF}\\x{C0}\\x{80}\\x{ED}\\x{A0}\\x{80}\\x{F5}\\x{E2}\\x{82}");
}

TEST(PrintableText, KnowsUtf8) {
    EXPECT_TRUE(isUtf8("\xE2\x82\xAC"));
    EXPECT_FALSE(isUtf8("\xE2\x82"));
    EXPECT_FALSE(isUtf8("\xC0\x80"));
}

TEST(PrintableText, CountsCodePoints) {
    EXPECT_EQ(textWidth("a\xE2\x82\xAC"), 2U);
}

}  // namespace
}  // namespace mireth::receiver
