// Reads the configuration file: its limits, its rules and, through ProjectReader, its projects.
#include "settings/Config.hpp"

#include <exception>

#include "base/JsonText.hpp"
#include "base/SmallFile.hpp"
#include "settings/ConfigValues.hpp"
#include "settings/ConfigWarnings.hpp"
#include "settings/ProjectReader.hpp"

namespace mireth::receiver {
namespace {

constexpr std::size_t longestFile = std::size_t{4} * 1024 * 1024;
constexpr std::uint64_t mostBytes = std::uint64_t{1} << 50U;

void readLimits(const ConfigJson& object, Limits& limits) {
    requireObject(object, "limits");
    refuseUnknown(object,
                  {"requestBytes", "connections", "connectionsPerAddress", "headSeconds", "idleSeconds",
                   "requestSeconds", "chunks", "sessionBytes", "timelineBytes", "logLines", "logBytes",
                   "diskBytes", "freeBytes"},
                  "limits");
    constexpr int day = 86400;
    readWhole(object, "requestBytes", std::uint64_t{1} << 32U, "limits", limits.requestBytes);
    readWhole(object, "connections", std::size_t{4096}, "limits", limits.connections);
    limits.connectionsPerAddress = wholeOf(object, "connectionsPerAddress", std::size_t{4096}, "limits");
    readWhole(object, "headSeconds", day, "limits", limits.headSeconds);
    readWhole(object, "idleSeconds", day, "limits", limits.idleSeconds);
    readWhole(object, "requestSeconds", day, "limits", limits.requestSeconds);
    readWhole(object, "chunks", std::int64_t{1'000'000}, "limits", limits.chunks);
    readWhole(object, "sessionBytes", mostBytes, "limits", limits.sessionBytes);
    readWhole(object, "timelineBytes", mostBytes, "limits", limits.timelineBytes);
    readWhole(object, "logBytes", mostBytes, "limits", limits.logBytes);
    limits.diskBytes = wholeOf(object, "diskBytes", mostBytes, "limits");
    readWhole(object, "freeBytes", mostBytes, "limits", limits.freeBytes);
    readWhole(object, "logLines", std::int64_t{100'000'000}, "limits", limits.logLines);
}

RetentionRules retentionOf(const ConfigJson& object) {
    requireObject(object, "retention");
    refuseUnknown(object, {"days", "bytes"}, "retention");
    return {.days = wholeOf(object, "days", 36'500, "retention"),
            .bytes = wholeOf(object, "bytes", mostBytes, "retention")};
}

Config configOf(const ConfigJson& root) {
    requireObject(root, "the file");
    refuseUnknown(root, {"default", "projects", "limits", "retention"}, "");
    Config config;
    config.fallback.reset();
    if (const auto found = root.find("default"); found != root.end()) {
        requireObject(*found, "default");
        refuseUnknown(*found, {"srEnabled", "samplingRate", "dataCenter", "customSignal", "uploadRate"},
                      "default");
        config.fallback = readProjectSettings(*found, ProjectSettings{}, "default");
    }
    if (const auto found = root.find("projects"); found != root.end()) {
        readProjects(*found, config);
    }
    if (const auto found = root.find("limits"); found != root.end()) {
        readLimits(*found, config.limits);
    }
    if (const auto found = root.find("retention"); found != root.end()) {
        config.retention = retentionOf(*found);
    }
    config.warnings = warningsAbout(config);
    return config;
}

}  // namespace

const ProjectSettings* Config::find(const std::string& brandId, const std::string& projectId) const {
    const auto found = projects.find({brandId, projectId});
    if (found != projects.end()) {
        return &found->second;
    }
    return fallback ? &*fallback : nullptr;
}

std::pair<std::string, std::string> Config::payerOf(const std::string& brandId,
                                                    const std::string& projectId) const {
    const std::pair key{brandId, projectId};
    return projects.contains(key) ? key : std::pair<std::string, std::string>{};
}

std::expected<Config, std::string> Config::read(const std::string& path) {
    const auto text = readSmallFile(path, longestFile);
    if (!text) {
        return std::unexpected(text.error());
    }
    return parse(*text, path);
}

std::expected<Config, std::string> Config::parse(std::string_view text, const std::string& source) {
    const auto root = parseJson(text, {.bytes = longestFile});
    if (!root) {
        return std::unexpected(source + ": " + root.error());
    }
    try {
        return configOf(*root);
    } catch (const std::exception& complaint) {
        return std::unexpected(source + ": " + complaint.what());
    }
}

}  // namespace mireth::receiver
