// A function for each thing that is looked at.
#include "settings/ConfigWarnings.hpp"

#include <algorithm>
#include <string_view>

namespace mireth::receiver {
namespace {

// Clients make a part of a host name of what stands before the first dot.
bool canBeHostLabel(std::string_view dataCenter) {
    constexpr std::size_t longest = 63;
    const auto label = dataCenter.substr(0, dataCenter.find('.'));
    const auto isEdge = [](char c) { return c == '-' || c == '_'; };
    const auto isAllowed = [&](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || isEdge(c);
    };
    return !label.empty() && label.size() <= longest && !isEdge(label.front()) && !isEdge(label.back()) &&
           std::ranges::all_of(label, isAllowed);
}

void addDataCenter(std::vector<std::string>& lines, const std::string& where, const std::string& dataCenter) {
    if (dataCenter.substr(0, dataCenter.find('.')).empty()) {
        lines.push_back(where + ": dataCenter \"" + dataCenter +
                        "\" names none, and without one clients start no session");
    } else if (!canBeHostLabel(dataCenter)) {
        lines.push_back(where + ": dataCenter \"" + dataCenter +
                        "\" cannot be a part of a host name, which clients need for their log lines");
    }
}

}  // namespace

std::vector<std::string> warningsAbout(const Config& config) {
    std::vector<std::string> lines;
    if (!config.fallback && config.projects.empty()) {
        lines.emplace_back(
            "every project is unknown, as \"projects\" lists none and there is no \"default\"");
    }
    if (config.fallback) {
        addDataCenter(lines, "default", config.fallback->dataCenter);
    }
    for (const auto& [key, project] : config.projects) {
        if (!config.fallback || config.fallback->dataCenter != project.dataCenter) {
            addDataCenter(lines, "project " + key.first + "/" + key.second, project.dataCenter);
        }
    }
    const auto most = config.limits.diskBytes;
    const auto kept = config.retention.bytes;
    if (most && kept && *most < *kept) {
        lines.push_back("limits.diskBytes, " + std::to_string(*most) + ", is below retention.bytes, " +
                        std::to_string(*kept) + ": uploads are refused before anything old is removed");
    }
    return lines;
}

}  // namespace mireth::receiver
