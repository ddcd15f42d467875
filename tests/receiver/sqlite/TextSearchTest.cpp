// Folding and runs of three characters.
#include "sqlite/TextSearch.hpp"

#include <gtest/gtest.h>

namespace mireth::receiver {
namespace {

using Grams = std::vector<std::string>;

TEST(FoldedText, IsInLowerCaseLetterByLetter) {
    EXPECT_EQ(foldedText("Cart ÄÖÜ ΚΑΛΆΘΙ ЖУК"), "cart äöü καλάθι жук");
    EXPECT_EQ(foldedText("日本 🙂"), "日本 🙂");
    EXPECT_EQ(foldedText(""), "");
}

TEST(FoldedText, BytesThatAreNoTextBecomeReplacements) {
    EXPECT_EQ(foldedText("a\xFF"), "a\xEF\xBF\xBD");
    EXPECT_EQ(foldedText("\xC3"), "\xEF\xBF\xBD");
    EXPECT_EQ(foldedText("\xE2\x82z"), "\xEF\xBF\xBDz");
}

TEST(Grams, AreEveryRunOfThreeCharactersOnce) {
    EXPECT_EQ(gramsOf("cart"), (Grams{"art", "car"}));
    EXPECT_EQ(gramsOf("aaaaaa"), Grams{"aaa"});
    EXPECT_EQ(gramsOf("käse"), (Grams{"käs", "äse"}));
    EXPECT_EQ(gramsOf("ab"), Grams{});
    EXPECT_EQ(gramsOf(""), Grams{});
}

}  // namespace
}  // namespace mireth::receiver
