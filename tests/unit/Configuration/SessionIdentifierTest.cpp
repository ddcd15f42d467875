#include "PrivateSide/Configuration/SessionIdentifier.hpp"

#include <gtest/gtest.h>

#include <string>

namespace mireth {
namespace {

TEST(SessionIdentifier, PlainNamesUpTo128CharactersAreValid) {
    EXPECT_TRUE(isValidSessionIdentifier("S1"));
    EXPECT_TRUE(isValidSessionIdentifier("6F9619FF-8B86-D011-B42D-00C04FC964FF"));
    EXPECT_TRUE(isValidSessionIdentifier("a.b_c-D9"));
    EXPECT_TRUE(isValidSessionIdentifier("..."));
    EXPECT_TRUE(isValidSessionIdentifier(std::string(128, 'a')));
}

TEST(SessionIdentifier, NothingThatCouldLeaveAFolderOrALineIsValid) {
    for (const std::string& text :
         {std::string(), std::string("."), std::string(".."), std::string("../x"), std::string("a/b"),
          std::string("a\\b"), std::string("a\r\nb"), std::string("a\n"), std::string("a b"),
          std::string("a%2fb"), std::string("a\0b", 3), std::string("größe"), std::string("a?b"),
          std::string("a#b"), std::string(129, 'a'), std::string(4096, 'a')}) {
        EXPECT_FALSE(isValidSessionIdentifier(text)) << text;
    }
}

}  // namespace
}  // namespace mireth
