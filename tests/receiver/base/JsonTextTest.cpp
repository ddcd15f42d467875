// JSON from outside: its caps.
#include "base/JsonText.hpp"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

namespace mireth::receiver {
namespace {

TEST(JsonText, KeepsTheOrderOfKeysAndShortestFloats) {
    const auto json = parseJson(R"({"b":0.42,"a":1})", {.bytes = 100});
    ASSERT_TRUE(json);
    EXPECT_EQ(jsonText(*json), R"({"b":0.42,"a":1})");
}

TEST(JsonText, RefusesWhatIsTooLong) {
    EXPECT_TRUE(parseJson("[1,2]", {.bytes = 5}));
    EXPECT_EQ(parseJson("[1,2,]", {.bytes = 5}).error(), "longer than 5 bytes");
}

TEST(JsonText, RefusesWhatIsTooDeepBeforeParsingIt) {
    EXPECT_TRUE(parseJson("[[[]]]", {.bytes = 100, .depth = 3}));
    EXPECT_EQ(parseJson("[[[[]]]]", {.bytes = 100, .depth = 3}).error(), "nested deeper than 3 levels");
    EXPECT_EQ(parseJson(std::string(1'000'000, '['), {.bytes = 2'000'000}).error(),
              "nested deeper than 16 levels");
}

TEST(JsonText, BracketsInStringsDoNotCount) {
    EXPECT_TRUE(parseJson(R"(["[[[[\"[[[["])", {.bytes = 100, .depth = 1}));
}

TEST(JsonText, RefusesARepeatedKeyAtAnyDepth) {
    EXPECT_EQ(parseJson(R"([{"a":{"b":1,"b":2}}])", {.bytes = 100}).error(),
              "the key \"b\" stands twice in one object, in [0].a");
    EXPECT_EQ(parseJson(R"({"a":[[],1,{"b":[{}],"c":1,"c":2}]})", {.bytes = 100}).error(),
              "the key \"c\" stands twice in one object, in a[2]");
    EXPECT_TRUE(parseJson(R"([{"a":1},{"a":1}])", {.bytes = 100}));
}

// Ten thousands of keys in one object would take minutes.
TEST(JsonText, RefusesTooManyKeysAndTooManyValuesEarly) {
    const auto object = [](int keys) {
        std::string text = "{";
        for (int i = 0; i < keys; ++i) {
            text += (i == 0 ? "\"" : ",\"") + std::to_string(i) + "\":0";
        }
        return text + "}";
    };
    EXPECT_TRUE(parseJson(object(256), {.bytes = 10'000'000}));
    EXPECT_EQ(parseJson(object(257), {.bytes = 10'000'000}).error(), "with an object of more than 256 keys");
    EXPECT_FALSE(parseJson(object(500'000), {.bytes = 10'000'000}));
    EXPECT_TRUE(parseJson("[0,[],{}]", {.bytes = 100, .values = 4}));
    // As many as there may be, which must not take time by the square of them.
    std::string objects = "[{}";
    for (int i = 2; i < 300'000; ++i) {
        objects += ",{}";
    }
    EXPECT_TRUE(parseJson(objects + "]", {.bytes = 10'000'000}));
    EXPECT_EQ(parseJson("[0,[],{}]", {.bytes = 100, .values = 3}).error(), "of more than 3 values");
}

TEST(JsonText, ItsComplaintsAreShortWhateverTheyQuote) {
    EXPECT_LT(parseJson(std::string(100'000, '9'), {.bytes = 1'000'000}).error().size(), 200U);
}

TEST(JsonText, RefusesWhatIsNoJson) {
    for (const auto* const text :
         {"", "{", "nul", "[1,]", "{\"a\" 1}", "\"\xFF\"", "NaN", "[1e999]", "1 2"}) {
        EXPECT_FALSE(parseJson(text, {.bytes = 100})) << text;
    }
}

TEST(JsonText, AnArrayCanBeTakenApartElementByElement) {
    const auto elements = [](std::string_view text) {
        std::vector<std::string> all;
        auto rest = elementsOf(text).value();
        while (const auto element = nextElement(rest)) {
            all.emplace_back(*element);
        }
        return all;
    };
    using All = std::vector<std::string>;
    EXPECT_EQ(elements("[]"), All{});
    EXPECT_EQ(elements(" [ \n ] "), All{});
    EXPECT_EQ(elements(R"([1, {"a":[1,2],"b":"],[\\\"," } ,"x,y",[ ],null])"),
              (All{"1", R"({"a":[1,2],"b":"],[\\\"," })", R"("x,y")", "[ ]", "null"}));
    for (const auto* const text : {"", "1", "{}", "\"[]\"", "["}) {
        EXPECT_EQ(elementsOf(text), std::nullopt) << text;
    }
}

}  // namespace
}  // namespace mireth::receiver
