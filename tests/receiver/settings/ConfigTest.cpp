// The configuration file: what is read, what is inherited, and how a mistake is named.
#include "settings/Config.hpp"

#include <gtest/gtest.h>

#include "support/TemporaryDirectory.hpp"

namespace mireth::receiver {
namespace {

std::string errorOf(const std::string& text) {
    const auto config = Config::parse(text, "cfg.json");
    return config ? "" : config.error();
}

TEST(Config, WithoutAFileEveryProjectIsRecordedWhole) {
    const Config config;
    const auto* const project = config.find("any", "one");
    ASSERT_NE(project, nullptr);
    EXPECT_EQ(project->srEnabled, "SR_ENABLED_FOR_WEB_AND_MOBILE");
    EXPECT_EQ(project->samplingRate, 100);
    EXPECT_TRUE(project->acceptsMobileSessions());
    EXPECT_EQ(config.limits.requestBytes, 20U * 1024 * 1024);
}

TEST(Config, ReadsEveryKey) {
    const auto config = Config::parse(R"({
        "projects": [{"brandId": "b1", "projectId": "p1", "srEnabled": "SR_DISABLED", "samplingRate": 12.5,
                      "dataCenter": "EU_CENTRAL", "customSignal": [{"name": "x"}],
                      "uploadRate": {"perSecond": 0.5, "burst": 3}}],
        "limits": {"requestBytes": 1, "connections": 2, "connectionsPerAddress": 9, "headSeconds": 3, "idleSeconds": 4, "requestSeconds": 5,
                   "chunks": 6, "logLines": 7}})",
                                      "cfg.json");
    ASSERT_TRUE(config) << config.error();
    const auto* const project = config->find("b1", "p1");
    ASSERT_NE(project, nullptr);
    EXPECT_EQ(project->srEnabled, "SR_DISABLED");
    EXPECT_FALSE(project->acceptsMobileSessions());
    EXPECT_EQ(project->samplingRate, 12.5);
    EXPECT_EQ(project->dataCenter, "EU_CENTRAL");
    EXPECT_EQ(project->customSignal.at(0).at("name"), "x");
    EXPECT_EQ(project->uploadRate.perSecond, 0.5);
    EXPECT_EQ(project->uploadRate.burst, 3);
    EXPECT_EQ(config->limits.requestBytes, 1U);
    EXPECT_EQ(config->limits.connections, 2U);
    EXPECT_EQ(config->limits.connectionsPerAddress, 9U);
    EXPECT_EQ(config->limits.headSeconds, 3);
    EXPECT_EQ(config->limits.idleSeconds, 4);
    EXPECT_EQ(config->limits.requestSeconds, 5);
    EXPECT_EQ(config->limits.chunks, 6);
    EXPECT_EQ(config->limits.logLines, 7);
}

TEST(Config, AProjectInheritsFromTheDefaultEntry) {
    const auto config = Config::parse(R"({"projects": [{"brandId": "b", "projectId": "p", "samplingRate": 1}],
                          "default": {"srEnabled": null, "dataCenter": "DC", "uploadRate": {"burst": 9}}})",
                                      "cfg.json");
    ASSERT_TRUE(config) << config.error();
    EXPECT_EQ(config->find("b", "p")->samplingRate, 1);
    EXPECT_EQ(config->find("b", "p")->srEnabled, std::nullopt);
    EXPECT_EQ(config->find("b", "p")->dataCenter, "DC");
    EXPECT_EQ(config->find("b", "p")->uploadRate.burst, 9);
    EXPECT_EQ(config->find("other", "p")->dataCenter, "DC");
}

TEST(Config, AFileWithoutADefaultEntryKnowsOnlyItsProjects) {
    const auto config = Config::parse(R"({"projects": [{"brandId": "b", "projectId": "p"}]})", "cfg.json");
    ASSERT_TRUE(config) << config.error();
    EXPECT_NE(config->find("b", "p"), nullptr);
    EXPECT_EQ(config->find("b", "q"), nullptr);
}

TEST(Config, OnlyTheMobileEnablementsAcceptSessions) {
    const auto accepts = [](std::optional<std::string> value) {
        return ProjectSettings{.srEnabled = std::move(value), .customSignal = {}, .uploadRate = {}}
            .acceptsMobileSessions();
    };
    EXPECT_TRUE(accepts("SR_ENABLED_FOR_MOBILE_ONLY"));
    EXPECT_TRUE(accepts("SR_ENABLED_FOR_WEB_AND_MOBILE"));
    EXPECT_FALSE(accepts("SR_ENABLED_FOR_WEB_ONLY"));
    EXPECT_FALSE(accepts("SR_DISABLED"));
    EXPECT_FALSE(accepts("SR_UNKNOWN"));
    EXPECT_FALSE(accepts(std::nullopt));
}

TEST(Config, AnErrorNamesTheFileTheKeyAndTheReason) {
    EXPECT_EQ(errorOf(R"({"defualt": {}})"), "cfg.json: defualt: unknown key");
    EXPECT_EQ(errorOf(R"({"default": {"samplingrate": 1}})"), "cfg.json: default.samplingrate: unknown key");
    EXPECT_EQ(errorOf(R"({"default": {"samplingRate": 101}})"),
              "cfg.json: default.samplingRate: must be a number from 0 to 100, not 101");
    EXPECT_EQ(
        errorOf(R"({"default": {"srEnabled": "yes"}})"),
        "cfg.json: default.srEnabled: must be null or one of SR_UNKNOWN, SR_DISABLED, "
        "SR_ENABLED_FOR_WEB_ONLY, SR_ENABLED_FOR_MOBILE_ONLY, SR_ENABLED_FOR_WEB_AND_MOBILE, not \"yes\"");
    EXPECT_EQ(errorOf(R"({"default": {"dataCenter": 1}})"),
              "cfg.json: default.dataCenter: must be a string, not 1");
    EXPECT_EQ(errorOf(R"({"default": {"customSignal": [{"a": 1}]}})"),
              "cfg.json: default.customSignal[0].a: must be a string, not 1");
    EXPECT_EQ(errorOf(R"({"default": {"uploadRate": {"burst": 0}}})"),
              "cfg.json: default.uploadRate.burst: must be a number from 1 to 1000000, not 0");
    EXPECT_EQ(errorOf(R"({"projects": [{"brandId": "b"}]})"), "cfg.json: projects[0].projectId: missing");
    EXPECT_EQ(errorOf(R"({"projects": [{"brandId": "", "projectId": "p"}]})"),
              "cfg.json: projects[0].brandId: must not be empty");
    EXPECT_EQ(errorOf(R"({"projects": [{"brandId":"b","projectId":"p"},{"brandId":"b","projectId":"p"}]})"),
              "cfg.json: projects[1]: brandId \"b\" and projectId \"p\" stand in the list twice");
    EXPECT_EQ(errorOf(R"({"limits": {"connections": 0}})"),
              "cfg.json: limits.connections: must be a whole number from 1 to 4096, not 0");
    EXPECT_EQ(errorOf(R"({"limits": {"requestBytes": 1.5}})"),
              "cfg.json: limits.requestBytes: must be a whole number from 1 to 4294967296, not 1.5");
    EXPECT_EQ(errorOf(R"({"limits": {"chunks": -1}})"),
              "cfg.json: limits.chunks: must be a whole number from 1 to 1000000, not -1");
    EXPECT_EQ(errorOf("[]"), "cfg.json: the file: must be an object, not an array");
    EXPECT_EQ(errorOf("{"), "cfg.json: not JSON at line 1, column 2");
    EXPECT_EQ(errorOf(R"({"limits": {}, "limits": {}})"),
              "cfg.json: the key \"limits\" stands twice in one object");
    EXPECT_EQ(errorOf("{\n  \"projects\": [\n    {\"brandId\": b}]}"),
              "cfg.json: not JSON at line 3, column 17");
    EXPECT_EQ(errorOf(R"({"projects": [{"brandId": "b"}, {"uploadRate": {"burst": 1, "burst": 2}}]})"),
              "cfg.json: the key \"burst\" stands twice in one object, in projects[1].uploadRate");
}

std::vector<std::string> warningsOf(const std::string& text) {
    return Config::parse(text, "cfg.json").value().warnings;
}

using Warnings = std::vector<std::string>;

TEST(Config, WarnsWhenEveryProjectIsUnknown) {
    const Warnings unknown{
        "every project is unknown, as \"projects\" lists none and there is no \"default\""};
    EXPECT_EQ(warningsOf("{}"), unknown);
    EXPECT_EQ(warningsOf(R"({"projects": []})"), unknown);
    EXPECT_EQ(warningsOf(R"({"default": {}})"), Warnings());
    EXPECT_EQ(warningsOf(R"({"projects": [{"brandId": "b", "projectId": "p"}]})"), Warnings());
    EXPECT_EQ(Config().warnings, Warnings());
}

TEST(Config, WarnsOfADataCenterThatClientsCannotUse) {
    EXPECT_EQ(warningsOf(R"({"default": {"dataCenter": ""}})"),
              Warnings{"default: dataCenter \"\" names none, and without one clients start no session"});
    EXPECT_EQ(
        warningsOf(
            R"({"default": {}, "projects": [{"brandId": "b", "projectId": "p", "dataCenter": "A/B c"}]})"),
        Warnings{"project b/p: dataCenter \"A/B c\" cannot be a part of a host name, which clients need for "
                 "their log lines"});
    for (const char* bad : {"-a", "a_", "a:1"}) {
        EXPECT_EQ(warningsOf(R"({"default": {"dataCenter": ")" + std::string(bad) + "\"}}").size(), 1U)
            << bad;
    }
    for (const char* good : {"US_WEST", "eu-1", "EU_CENTRAL.example.org"}) {
        EXPECT_EQ(warningsOf(R"({"default": {"dataCenter": ")" + std::string(good) + "\"}}"), Warnings());
    }
    // Said once where it stands, not for everybody who inherits it.
    EXPECT_EQ(
        warningsOf(R"({"default": {"dataCenter": ""}, "projects": [{"brandId": "b", "projectId": "p"}]})")
            .size(),
        1U);
}

TEST(Config, WarnsWhenUploadsAreRefusedBeforeRetentionBegins) {
    EXPECT_EQ(
        warningsOf(R"({"default": {}, "limits": {"diskBytes": 9}, "retention": {"bytes": 10}})"),
        Warnings{"limits.diskBytes, 9, is below retention.bytes, 10: uploads are refused before anything "
                 "old is removed"});
    EXPECT_EQ(warningsOf(R"({"default": {}, "limits": {"diskBytes": 10}, "retention": {"bytes": 10}})"),
              Warnings());
}

TEST(Config, AnUnreadableFileIsNamed) {
    const test::TemporaryDirectory directory;
    const auto missing = Config::read(directory.file("none.json"));
    ASSERT_FALSE(missing);
    EXPECT_EQ(missing.error(), directory.file("none.json") + ": cannot be read: No such file or directory");
    const auto folder = Config::read(directory.path());
    ASSERT_FALSE(folder);
    EXPECT_EQ(folder.error(), directory.path() + ": cannot be read: Is a directory");
    const auto large = Config::read(directory.write("large.json", std::string((4U << 20U) + 1, ' ')));
    ASSERT_FALSE(large);
    EXPECT_EQ(large.error(),
              directory.file("large.json") + ": cannot be read: it is longer than 4194304 bytes");
    const auto path = directory.write("good.json", "{}");
    EXPECT_TRUE(Config::read(path));
}

}  // namespace
}  // namespace mireth::receiver
