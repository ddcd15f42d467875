// What the operator's configuration file says: the projects and how each is to be recorded, and the limits.
// Read once at start; constant afterwards.
#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace mireth::receiver {

/// How fast one project may upload: `burst` chunks at once, refilled at `perSecond`.
struct UploadRate {
    double perSecond = 50;
    double burst = 500;
};

/// What a client is told about its project, and how it is treated.
struct ProjectSettings {
    /// The raw enablement value that clients are sent; none leaves the key out of the answer.
    std::optional<std::string> srEnabled = "SR_ENABLED_FOR_WEB_AND_MOBILE";
    /// Percentage of sessions that clients record, 0 to 100.
    double samplingRate = 100;
    /// Name of the data centre; clients make the log host's first label from it.
    std::string dataCenter = "US_WEST";
    std::vector<std::map<std::string, std::string>> customSignal;
    UploadRate uploadRate;

    /// True when sessions of phones may be created.
    bool acceptsMobileSessions() const;
};

/// Bounds on what one client can make the receiver do.
struct Limits {
    std::uint64_t requestBytes = 20ULL * 1024 * 1024;  ///< body of one chunk upload
    /// Served at once, a thread each; as many more wait for one, the rest are answered 503.
    std::size_t connections = 512;
    int headSeconds = 10;          ///< from the connection until the request's headers are complete
    int idleSeconds = 15;          ///< longest silence within a request
    int requestSeconds = 120;      ///< from the connection until the body is complete
    std::int64_t chunks = 10'000;  ///< kept for one session
    std::uint64_t sessionBytes = 1ULL << 30U;    ///< videos and timelines kept for one session
    std::uint64_t timelineBytes = 32ULL << 20U;  ///< of the timelines alone
    std::int64_t logLines = 10'000;        ///< kept for one session; lines without one share one such budget
    std::uint64_t logBytes = 4ULL << 20U;  ///< the same in bytes
    std::optional<std::uint64_t> diskBytes;   ///< of all that is kept; none: as much as the disk holds
    std::uint64_t freeBytes = 256ULL << 20U;  ///< that stay free on the disk
};

/// When sessions are removed by themselves; without a rule, never.
struct RetentionRules {
    std::optional<std::int64_t> days;    ///< since anything of a session came in
    std::optional<std::uint64_t> bytes;  ///< of all that is kept; the oldest sessions go first
};

struct Config {
    /// Used for a project that `projects` does not name; none: such a project is unknown.
    std::optional<ProjectSettings> fallback = ProjectSettings{};
    /// Keyed by brand id and project id.
    std::map<std::pair<std::string, std::string>, ProjectSettings> projects;
    Limits limits;
    RetentionRules retention;

    /// The project's settings, or null when the project is unknown. Valid as long as this object.
    const ProjectSettings* find(const std::string& brandId, const std::string& projectId) const;

    /// Reads `path`. An error names the file, the key and what is wrong with it.
    static std::expected<Config, std::string> read(const std::string& path);
    /// The same from text; `source` is the name that errors give it.
    static std::expected<Config, std::string> parse(std::string_view text, const std::string& source);
};

}  // namespace mireth::receiver
