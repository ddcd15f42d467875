#include <sys/stat.h>

#include "TestSupport.hpp"
#include "platforms/linux/system/JsonFileInformationDictionary.hpp"
#include "platforms/linux/system/JsonFileKeyValueStore.hpp"

namespace mireth::platform {

using test::TemporaryDirectory;
using test::writeFile;

TEST(JsonFileInformationDictionary, TheHostsOwnValuesNeedNoFile) {
    const JsonFileInformationDictionary information(TextMap{{"VEX_VERSION", "1.0.0"}});
    EXPECT_EQ(information.string(information_keys::vexVersion), "1.0.0");
    EXPECT_EQ(information.string(information_keys::appVersion), std::nullopt);
    EXPECT_EQ(information.error(), "");
}

TEST(JsonFileInformationDictionary, TheEnvironmentNamesTheFile) {
    const TemporaryDirectory root;
    writeFile(root / "info.json", R"({"VEX_VERSION":"2"})");
    setenv("MIRETHVEX_INFO", (root / "info.json").c_str(), 1);
    const JsonFileInformationDictionary found;
    setenv("MIRETHVEX_INFO", (root / "missing.json").c_str(), 1);
    const JsonFileInformationDictionary missing;
    unsetenv("MIRETHVEX_INFO");
    EXPECT_EQ(found.string("VEX_VERSION"), "2");
    EXPECT_NE(missing.error().find("missing.json"), std::string::npos) << "a file that was asked for";
}

TEST(JsonFileInformationDictionary, ValuesBesideAFileStandInPlaceOfItsOwn) {
    const TemporaryDirectory root;
    writeFile(root / "info.json", R"({"VEX_VERSION": "2", "SR_ENDPOINT_URL": 1, "DEVICE_IDIOM": "phone"})");
    const JsonFileInformationDictionary information(
        root / "info.json", {{"VEX_VERSION", "3"}, {"SR_ENDPOINT_URL", "https://a.example"}});
    EXPECT_EQ(information.string("VEX_VERSION"), "3");
    EXPECT_EQ(information.string("SR_ENDPOINT_URL"), "https://a.example");
    EXPECT_EQ(information.string("DEVICE_IDIOM"), "phone");
    EXPECT_TRUE(information.keysOfOtherValues().empty());
}

TEST(JsonFileInformationDictionary, WithoutTheFileTheValuesBesideItHold) {
    const JsonFileInformationDictionary information("/nowhere/info.json", {{"VEX_VERSION", "3"}});
    EXPECT_EQ(information.string("VEX_VERSION"), "3");
    EXPECT_NE(information.error(), "");
}

TEST(JsonFileInformationDictionary, TheFileBesideTheExecutableNeedNotBeThere) {
    const JsonFileInformationDictionary information;
    EXPECT_EQ(information.error(), "");
    EXPECT_EQ(information.string("VEX_VERSION"), std::nullopt);
}

TEST(JsonFileInformationDictionary, ABadFileGivesNoValuesAndAReasonThatNamesIt) {
    const TemporaryDirectory root;
    const std::string path = (root / "bad.json").native();
    const std::pair<std::string, std::string> files[] = {
        {"", "it is no JSON from byte 1 on"},
        {"{\"a\":\"b\"", "it is no JSON from byte 9 on"},
        {"[\"a\"]", "its top is no object"},
        {"{\"a\":\"b\",\"c\":1e999}", "a number in it is too large"},
        {"{\"a\":\"\xff\"}", "it is no JSON from byte "},
        {"{\"a\":" + std::string(33, '[') + std::string(33, ']') + "}", "it is nested deeper than 32"},
        {std::string(500'000, '['), "it is nested deeper than 32"},
        {"{\"a\":\"" + std::string(1024 * 1024, 'x') + "\"}", "it is longer than 1048576 bytes"},
    };
    for (const auto& [content, reason] : files) {
        writeFile(path, content);
        const JsonFileInformationDictionary information{std::filesystem::path(path)};
        EXPECT_EQ(information.string("a"), std::nullopt);
        EXPECT_TRUE(information.error().starts_with("cannot read '" + path + "': ")) << information.error();
        EXPECT_NE(information.error().find(reason), std::string::npos) << information.error();
    }
}

TEST(JsonFileInformationDictionary, BracketsInTextsAreNoNesting) {
    const TemporaryDirectory root;
    writeFile(root / "info.json", "{\"a\":\"" + std::string(100, '[') + "\\\"[\"}");
    const JsonFileInformationDictionary information{root / "info.json"};
    EXPECT_EQ(information.error(), "");
    EXPECT_EQ(information.string("a"), std::string(100, '[') + "\"[");
}

TEST(JsonFileInformationDictionary, ANamedPipeIsRefusedAndNotWaitedFor) {
    const TemporaryDirectory root;
    ASSERT_EQ(mkfifo((root / "pipe").c_str(), 0600), 0);
    const JsonFileInformationDictionary information{root / "pipe"};
    EXPECT_NE(information.error().find("it is not a regular file"), std::string::npos) << information.error();
}

TEST(JsonFileKeyValueStore, DefaultsLieInTheUsersConfiguration) {
    const TemporaryDirectory root;
    writeFile(root / "mireth/defaults.json", R"({"MirethClientType":"rn"})");
    setenv("XDG_CONFIG_HOME", root.path().c_str(), 1);
    const JsonFileKeyValueStore store;
    unsetenv("XDG_CONFIG_HOME");
    EXPECT_EQ(store.string("MirethClientType"), "rn");
}

TEST(JsonFileKeyValueStore, ABadFileKeepsTheValuesAndSaysWhy) {
    const TemporaryDirectory root;
    writeFile(root / "defaults.json", R"({"a":"1"})");
    JsonFileKeyValueStore store(root / "defaults.json");
    writeFile(root / "defaults.json", R"({"a":)");
    EXPECT_FALSE(store.synchronize());
    EXPECT_NE(store.error().find("defaults.json"), std::string::npos);
    EXPECT_EQ(store.string("a"), "1");
    writeFile(root / "defaults.json", R"({"a":"2","limit":1e999})");
    EXPECT_FALSE(store.synchronize());
    EXPECT_EQ(store.string("a"), "1");
    std::filesystem::remove(root / "defaults.json");
    EXPECT_TRUE(store.synchronize()) << "no file means no values";
    EXPECT_EQ(store.error(), "");
    EXPECT_EQ(store.string("a"), std::nullopt);
}

}  // namespace mireth::platform
