// The form of a posted log line, ambiguous on purpose.
#include "wire/ClientLogForm.hpp"

#include <gtest/gtest.h>

namespace mireth::receiver {
namespace {

TEST(ClientLogForm, ReadsBothOrders) {
    const auto first = readClientLogForm("Message=a%20b&LevelName=error");
    ASSERT_TRUE(first);
    EXPECT_EQ(first->message, "a b");
    EXPECT_EQ(first->levelName, "error");
    const auto second = readClientLogForm("LevelName=info&Message=%7B%22k%22:1%7D");
    ASSERT_TRUE(second);
    EXPECT_EQ(second->message, R"({"k":1})");
    EXPECT_EQ(second->levelName, "info");
}

TEST(ClientLogForm, AMessageMayHoldSeparatorsAndEvenTheOtherFieldsName) {
    const auto first = readClientLogForm("Message=a&b=c&LevelName=info&x&LevelName=error");
    ASSERT_TRUE(first);
    EXPECT_EQ(first->message, "a&b=c&LevelName=info&x");
    EXPECT_EQ(first->levelName, "error");
    const auto second = readClientLogForm("LevelName=error&Message=a&Message=b&LevelName=info");
    ASSERT_TRUE(second);
    EXPECT_EQ(second->message, "a&Message=b&LevelName=info");
    EXPECT_EQ(second->levelName, "error");
}

TEST(ClientLogForm, APlusIsAPlus) {
    EXPECT_EQ(readClientLogForm("Message=1+1&LevelName=info")->message, "1+1");
}

TEST(ClientLogForm, AnEmptyMessageIsAMessage) {
    EXPECT_EQ(readClientLogForm("Message=&LevelName=info")->message, "");
}

TEST(ClientLogForm, RefusesWhatItCannotRead) {
    EXPECT_EQ(readClientLogForm("").error(), "the form begins with neither \"Message=\" nor \"LevelName=\"");
    EXPECT_EQ(readClientLogForm("x=1&Message=a&LevelName=b").error(),
              "the form begins with neither \"Message=\" nor \"LevelName=\"");
    EXPECT_EQ(readClientLogForm("Message=a").error(), "the form lacks \"LevelName\"");
    EXPECT_EQ(readClientLogForm("LevelName=error").error(), "the form lacks \"Message\"");
    EXPECT_EQ(readClientLogForm("Message=a%2&LevelName=info").error(),
              "\"Message\" has a malformed percent escape at byte 1");
    EXPECT_EQ(readClientLogForm("Message=%zz&LevelName=info").error(),
              "\"Message\" has a malformed percent escape at byte 0");
    EXPECT_EQ(readClientLogForm("Message=%FF&LevelName=info").error(), "\"Message\" is not UTF-8");
    EXPECT_EQ(readClientLogForm("Message=a&LevelName=").error(), "\"LevelName\" is not a plain word");
    EXPECT_EQ(readClientLogForm("Message=a&LevelName=a%20b").error(), "\"LevelName\" is not a plain word");
}

}  // namespace
}  // namespace mireth::receiver
