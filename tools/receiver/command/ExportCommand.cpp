// Bounds, then the store's chunks, then the joining.
#include "command/ExportCommand.hpp"

#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <ostream>
#include <system_error>

#include "base/PrintableText.hpp"
#include "sqlite/SqliteStore.hpp"
#include "store/ChunkPlaces.hpp"
#include "video/VideoJoin.hpp"

namespace mireth::receiver {
namespace {

constexpr rlim_t mostSeconds = 60;
constexpr rlim_t mostMemory = rlim_t{1} << 30U;
// The tables of a video beside its pictures, generously.
constexpr rlim_t overhead = rlim_t{64} << 20U;

int fail(std::ostream& errors, const std::string& why) {
    errors << "mireth-receiver: " << printableText(why) << '\n';
    return 1;
}

void bound(int resource, rlim_t most) {
    const rlimit limit{.rlim_cur = most, .rlim_max = most};
    ::setrlimit(static_cast<__rlimit_resource_t>(resource), &limit);
}

// In bytes; 0 when it cannot be told.
rlim_t memoryMapped() {
    rlim_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    return pages * static_cast<rlim_t>(::sysconf(_SC_PAGESIZE));
}

void boundProcess() {
    ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    bound(RLIMIT_CORE, 0);
    bound(RLIMIT_CPU, mostSeconds);
    // On top of what there is: a checking build has mapped terabytes for itself.
    bound(RLIMIT_AS, memoryMapped() + mostMemory);
    // When memory runs out, let it be this process that goes.
    std::ofstream("/proc/self/oom_score_adj") << "1000";
}

}  // namespace

int exportVideo(const ExportOptions& options, std::ostream& errors) {
    boundProcess();
    std::error_code unknown;
    if (!options.replace && std::filesystem::exists(options.output, unknown)) {
        return fail(errors, options.output + ": is there already; --force replaces it");
    }
    const auto store = SqliteStore::openForReading(options.data);
    if (!store) {
        return fail(errors, store.error());
    }
    const auto outline = (*store)->outline(options.session);
    if (!outline) {
        return fail(errors, outline.error());
    }
    if (!*outline) {
        return fail(errors, "there is no session \"" + options.session + "\" in " + options.data);
    }
    const auto& chunks = (*outline)->chunks;
    if (chunks.empty()) {
        return fail(errors, "session \"" + options.session + "\" has no chunks");
    }
    bound(RLIMIT_FSIZE, static_cast<rlim_t>((*outline)->summary.bytes) + overhead);
    std::vector<VideoPart> parts;
    parts.reserve(chunks.size());
    for (const auto& chunk : chunks) {
        parts.push_back({.name = "chunk " + std::to_string(chunk.number),
                         .open = [&, key = chunk.video.key] { return (*store)->openVideo(key); },
                         .atMillis = chunkPlace(chunk.number),
                         .mostMillis = placeMillis});
    }
    const auto joined = joinVideos(parts, options.output);
    return joined ? 0 : fail(errors, joined.error());
}

}  // namespace mireth::receiver
