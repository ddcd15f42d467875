// One rule for the default's settings and for each project's.
#include "settings/ProjectReader.hpp"

#include <array>
#include <utility>

namespace mireth::receiver {
namespace {

constexpr std::array<std::string_view, 5> enablements{"SR_UNKNOWN", "SR_DISABLED", "SR_ENABLED_FOR_WEB_ONLY",
                                                      "SR_ENABLED_FOR_MOBILE_ONLY",
                                                      "SR_ENABLED_FOR_WEB_AND_MOBILE"};

std::optional<std::string> enablementOf(const ConfigJson& value, const std::string& where) {
    if (value.is_null()) {
        return std::nullopt;
    }
    std::string known;
    for (const auto name : enablements) {
        if (value == name) {
            return std::string(name);
        }
        known += (known.empty() ? "" : ", ") + std::string(name);
    }
    complainOf(value, where, "null or one of " + known);
}

std::vector<std::map<std::string, std::string>> signalsOf(const ConfigJson& value, const std::string& where) {
    if (!value.is_array()) {
        complainOf(value, where, "an array of objects");
    }
    std::vector<std::map<std::string, std::string>> signals;
    for (const auto& entry : value) {
        const auto here = where + "[" + std::to_string(signals.size()) + "]";
        requireObject(entry, here);
        auto& signal = signals.emplace_back();
        for (const auto& [key, text] : entry.items()) {
            signal.emplace(key, textOf(text, memberOf(here, key)));
        }
    }
    return signals;
}

UploadRate rateOf(const ConfigJson& value, UploadRate rate, const std::string& where) {
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

}  // namespace

ProjectSettings readProjectSettings(const ConfigJson& object, ProjectSettings settings,
                                    const std::string& where) {
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

void readProjects(const ConfigJson& list, Config& config) {
    if (!list.is_array()) {
        complainOf(list, "projects", "an array");
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
        auto settings = readProjectSettings(list[i], config.fallback.value_or(ProjectSettings{}), where);
        if (!config.projects.emplace(key, std::move(settings)).second) {
            throw ConfigComplaint(where, "brandId \"" + key.first + "\" and projectId \"" + key.second +
                                             "\" stand in the list twice");
        }
    }
}

}  // namespace mireth::receiver
