// Reads the configuration file. Every key is checked and an unknown one is an error, so that a misspelt
// setting is never silently a default.
#include "settings/Config.hpp"

#include <array>
#include <fstream>
#include <limits>
#include <nlohmann/json.hpp>
#include <set>
#include <stdexcept>

#include "base/JsonText.hpp"

namespace mireth::receiver {
namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t longestFile = std::size_t{4} * 1024 * 1024;
constexpr std::size_t longestText = 256;
constexpr std::uint64_t mostBytes = std::uint64_t{1} << 50U;
constexpr std::array<std::string_view, 5> enablements{"SR_UNKNOWN", "SR_DISABLED", "SR_ENABLED_FOR_WEB_ONLY",
                                                      "SR_ENABLED_FOR_MOBILE_ONLY",
                                                      "SR_ENABLED_FOR_WEB_AND_MOBILE"};

// Carries a complaint out of the nested readers; never leaves this file.
struct Complaint : std::runtime_error {
    Complaint(const std::string& where, const std::string& why) : std::runtime_error(where + ": " + why) {}
};

std::string member(const std::string& where, std::string_view key) {
    return std::string(where).append(".").append(key);
}

void requireObject(const Json& value, const std::string& where) {
    if (!value.is_object()) {
        throw Complaint(where, "must be an object");
    }
}

void refuseUnknown(const Json& object, const std::set<std::string_view>& known, const std::string& where) {
    for (const auto& [key, value] : object.items()) {
        if (!known.contains(key)) {
            throw Complaint(where.empty() ? key : member(where, key), "unknown key");
        }
    }
}

std::string textOf(const Json& value, const std::string& where) {
    if (!value.is_string()) {
        throw Complaint(where, "must be a string");
    }
    auto text = value.get<std::string>();
    if (text.size() > longestText) {
        throw Complaint(where, "longer than " + std::to_string(longestText) + " bytes");
    }
    for (const char c : text) {
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) {
            throw Complaint(where, "must not hold control characters");
        }
    }
    return text;
}

double numberOf(const Json& value, double least, double most, const std::string& where) {
    if (!value.is_number() || value.get<double>() < least || value.get<double>() > most) {
        throw Complaint(where, "must be a number from " + Json(least).dump() + " to " + Json(most).dump());
    }
    return value.get<double>();
}

template <typename Integer>
void readWhole(const Json& object, const char* key, Integer most, const std::string& where, Integer& into) {
    const auto found = object.find(key);
    if (found == object.end()) {
        return;
    }
    if (!found->is_number_unsigned() || *found < 1U || *found > static_cast<std::uint64_t>(most)) {
        throw Complaint(where + "." + key, "must be a whole number from 1 to " + std::to_string(most));
    }
    into = static_cast<Integer>(found->get<std::uint64_t>());
}

template <typename Integer>
std::optional<Integer> optionalWhole(const Json& object, const char* key, Integer most,
                                     const std::string& where) {
    if (!object.contains(key)) {
        return std::nullopt;
    }
    Integer value{};
    readWhole(object, key, most, where, value);
    return value;
}

std::optional<std::string> enablementOf(const Json& value, const std::string& where) {
    if (value.is_null()) {
        return std::nullopt;
    }
    auto text = textOf(value, where);
    std::string known;
    for (const auto name : enablements) {
        if (text == name) {
            return text;
        }
        known += (known.empty() ? "" : ", ") + std::string(name);
    }
    throw Complaint(where, "must be null or one of " + known);
}

std::vector<std::map<std::string, std::string>> signalsOf(const Json& value, const std::string& where) {
    if (!value.is_array()) {
        throw Complaint(where, "must be an array of objects");
    }
    std::vector<std::map<std::string, std::string>> signals;
    for (const auto& entry : value) {
        const auto here = where + "[" + std::to_string(signals.size()) + "]";
        requireObject(entry, here);
        auto& signal = signals.emplace_back();
        for (const auto& [key, text] : entry.items()) {
            signal.emplace(key, textOf(text, member(here, key)));
        }
    }
    return signals;
}

UploadRate rateOf(const Json& value, UploadRate rate, const std::string& where) {
    requireObject(value, where);
    refuseUnknown(value, {"perSecond", "burst"}, where);
    if (const auto found = value.find("perSecond"); found != value.end()) {
        rate.perSecond = numberOf(*found, 0, 1e6, where + ".perSecond");
    }
    if (const auto found = value.find("burst"); found != value.end()) {
        rate.burst = numberOf(*found, 1, 1e6, where + ".burst");
    }
    return rate;
}

// `settings` holds what the keys that are left out mean.
ProjectSettings settingsOf(const Json& object, ProjectSettings settings, const std::string& where) {
    if (const auto found = object.find("srEnabled"); found != object.end()) {
        settings.srEnabled = enablementOf(*found, where + ".srEnabled");
    }
    if (const auto found = object.find("samplingRate"); found != object.end()) {
        settings.samplingRate = numberOf(*found, 0, 100, where + ".samplingRate");
    }
    if (const auto found = object.find("dataCenter"); found != object.end()) {
        settings.dataCenter = textOf(*found, where + ".dataCenter");
    }
    if (const auto found = object.find("customSignal"); found != object.end()) {
        settings.customSignal = signalsOf(*found, where + ".customSignal");
    }
    if (const auto found = object.find("uploadRate"); found != object.end()) {
        settings.uploadRate = rateOf(*found, settings.uploadRate, where + ".uploadRate");
    }
    return settings;
}

std::string requiredText(const Json& object, const char* key, const std::string& where) {
    const auto found = object.find(key);
    if (found == object.end()) {
        throw Complaint(where + "." + key, "missing");
    }
    auto text = textOf(*found, where + "." + key);
    if (text.empty()) {
        throw Complaint(where + "." + key, "must not be empty");
    }
    return text;
}

void readProjects(const Json& list, Config& config) {
    if (!list.is_array()) {
        throw Complaint("projects", "must be an array");
    }
    for (std::size_t i = 0; i < list.size(); ++i) {
        const auto where = "projects[" + std::to_string(i) + "]";
        requireObject(list[i], where);
        refuseUnknown(
            list[i],
            {"brandId", "projectId", "srEnabled", "samplingRate", "dataCenter", "customSignal", "uploadRate"},
            where);
        const std::pair key{requiredText(list[i], "brandId", where),
                            requiredText(list[i], "projectId", where)};
        auto settings = settingsOf(list[i], config.fallback.value_or(ProjectSettings{}), where);
        if (!config.projects.emplace(key, std::move(settings)).second) {
            throw Complaint(where, "brandId \"" + key.first + "\" and projectId \"" + key.second +
                                       "\" stand in the list twice");
        }
    }
}

void readLimits(const Json& object, Limits& limits) {
    requireObject(object, "limits");
    refuseUnknown(object,
                  {"requestBytes", "connections", "headSeconds", "idleSeconds", "requestSeconds", "chunks",
                   "sessionBytes", "timelineBytes", "logLines", "logBytes", "diskBytes", "freeBytes"},
                  "limits");
    constexpr int day = 86400;
    readWhole(object, "requestBytes", std::uint64_t{1} << 32U, "limits", limits.requestBytes);
    readWhole(object, "connections", std::size_t{4096}, "limits", limits.connections);
    readWhole(object, "headSeconds", day, "limits", limits.headSeconds);
    readWhole(object, "idleSeconds", day, "limits", limits.idleSeconds);
    readWhole(object, "requestSeconds", day, "limits", limits.requestSeconds);
    readWhole(object, "chunks", std::int64_t{1'000'000}, "limits", limits.chunks);
    readWhole(object, "sessionBytes", mostBytes, "limits", limits.sessionBytes);
    readWhole(object, "timelineBytes", mostBytes, "limits", limits.timelineBytes);
    readWhole(object, "logBytes", mostBytes, "limits", limits.logBytes);
    limits.diskBytes = optionalWhole(object, "diskBytes", mostBytes, "limits");
    readWhole(object, "freeBytes", mostBytes, "limits", limits.freeBytes);
    readWhole(object, "logLines", std::int64_t{100'000'000}, "limits", limits.logLines);
}

RetentionRules retentionOf(const Json& object) {
    requireObject(object, "retention");
    refuseUnknown(object, {"days", "bytes"}, "retention");
    return {.days = optionalWhole(object, "days", std::int64_t{36'500}, "retention"),
            .bytes = optionalWhole(object, "bytes", mostBytes, "retention")};
}

Config configOf(const Json& root) {
    requireObject(root, "the file");
    refuseUnknown(root, {"default", "projects", "limits", "retention"}, "");
    Config config;
    config.fallback.reset();
    if (const auto found = root.find("default"); found != root.end()) {
        requireObject(*found, "default");
        refuseUnknown(*found, {"srEnabled", "samplingRate", "dataCenter", "customSignal", "uploadRate"},
                      "default");
        config.fallback = settingsOf(*found, ProjectSettings{}, "default");
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
    return config;
}

}  // namespace

bool ProjectSettings::acceptsMobileSessions() const {
    return srEnabled == "SR_ENABLED_FOR_MOBILE_ONLY" || srEnabled == "SR_ENABLED_FOR_WEB_AND_MOBILE";
}

const ProjectSettings* Config::find(const std::string& brandId, const std::string& projectId) const {
    const auto found = projects.find({brandId, projectId});
    if (found != projects.end()) {
        return &found->second;
    }
    return fallback ? &*fallback : nullptr;
}

std::expected<Config, std::string> Config::read(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::string text(longestFile + 1, '\0');
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    if (!file.eof() && !file) {
        return std::unexpected(path + ": cannot be read");
    }
    text.resize(static_cast<std::size_t>(file.gcount()));
    return parse(text, path);
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
