// A token bucket for each kind.
#include "base/ReportThrottle.hpp"

#include <algorithm>
#include <utility>

namespace mireth::receiver {
namespace {

constexpr std::string_view otherKinds = "other lines";

std::string moreLikeIt(std::uint64_t held, const std::string& kind) {
    return std::to_string(held) + " more like it: " + kind;
}

}  // namespace

// A kind that has its whole burst again is as good as one never heard of.
void ReportThrottle::refill(Instant now) {
    for (auto& [name, kind] : kinds_) {
        const double passed = std::max(0.0, std::chrono::duration<double>(now - kind.filledAt).count());
        kind.allowance = std::min(burst, kind.allowance + passed);
        kind.filledAt = std::max(kind.filledAt, now);
    }
    std::erase_if(
        kinds_, [](const auto& entry) { return entry.second.held == 0 && entry.second.allowance >= burst; });
}

ReportThrottle::Kind& ReportThrottle::kindOf(std::string_view line, Instant now) {
    auto name = line.substr(0, line.find(": "));
    const auto found = kinds_.find(name);
    if (found != kinds_.end()) {
        return found->second;
    }
    if (kinds_.size() >= mostKinds) {
        name = otherKinds;
    }
    return kinds_.try_emplace(std::string(name), Kind{.filledAt = now}).first->second;
}

std::vector<std::string> ReportThrottle::pass(std::string_view line, Instant now) {
    refill(now);
    std::vector<std::string> lines;
    for (auto& [name, kind] : kinds_) {
        if (kind.held > 0 && kind.allowance >= 1) {
            lines.push_back(moreLikeIt(std::exchange(kind.held, 0), name));
            kind.allowance -= 1;
        }
    }
    auto& own = kindOf(line, now);
    if (own.allowance >= 1) {
        own.allowance -= 1;
        lines.emplace_back(line);
    } else {
        ++own.held;
    }
    return lines;
}

std::vector<std::string> ReportThrottle::rest() const {
    std::vector<std::string> lines;
    for (const auto& [name, kind] : kinds_) {
        if (kind.held > 0) {
            lines.push_back(moreLikeIt(kind.held, name));
        }
    }
    return lines;
}

}  // namespace mireth::receiver
