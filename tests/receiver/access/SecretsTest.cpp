// Comparing secrets and reading token files.
#include "access/Secrets.hpp"

#include <gtest/gtest.h>

#include "access/Viewers.hpp"
#include "support/TemporaryDirectory.hpp"

namespace mireth::receiver {
namespace {

TEST(Secrets, AreTheSameOnlyInEveryByte) {
    EXPECT_TRUE(sameSecret("secret", "secret"));
    EXPECT_TRUE(sameSecret("", ""));
    EXPECT_FALSE(sameSecret("secret", "secreT"));
    EXPECT_FALSE(sameSecret("secret", "secret "));
    EXPECT_FALSE(sameSecret("secret", ""));
    EXPECT_FALSE(sameSecret(std::string("a\0b", 3), std::string("a\0c", 3)));
}

TEST(Tokens, StandInAFileOnOneLine) {
    const test::TemporaryDirectory directory;
    EXPECT_EQ(readToken(directory.write("t", "abcdefghijklmnopqrst\r\n")), "abcdefghijklmnopqrst");
    EXPECT_EQ(readToken(directory.write("t", "ABCDEFGHIJ-_01234567")), "ABCDEFGHIJ-_01234567");
    EXPECT_TRUE(readToken(directory.write("t", std::string(128, 'a'))));
}

TEST(Tokens, AreLongAndNeedNoEscape) {
    const test::TemporaryDirectory directory;
    for (const auto& text :
         {std::string(), std::string(19, 'a'), std::string(129, 'a'), std::string(5000, 'a'),
          std::string(20, 'a') + "/", std::string("two lines of text that\nare no token"),
          std::string("a space is no part of it")}) {
        const auto token = readToken(directory.write("t", text));
        ASSERT_FALSE(token) << text;
        EXPECT_EQ(token.error().find(directory.file("t") + ": "), 0U) << token.error();
    }
    EXPECT_EQ(readToken(directory.file("none")).error(),
              directory.file("none") + ": cannot be read: No such file or directory");
    EXPECT_EQ(readToken(directory.path()).error(), directory.path() + ": cannot be read: Is a directory");
    EXPECT_EQ(readToken(directory.write("t", std::string(257, 'a'))).error(),
              directory.file("t") + ": cannot be read: it is longer than 256 bytes");
}

TEST(ViewersTest, OfTooManyTheFirstHasToLogInAgain) {
    Viewers viewers;
    const Viewers::Instant start{};
    for (int i = 0; i <= 1000; ++i) {
        viewers.add(std::to_string(i), start + std::chrono::seconds(i));
    }
    const auto now = start + std::chrono::seconds(1000);
    EXPECT_FALSE(viewers.knows("0", now));
    EXPECT_TRUE(viewers.knows("1", now));
    EXPECT_TRUE(viewers.knows("1000", now));
}

}  // namespace
}  // namespace mireth::receiver
