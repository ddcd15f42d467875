#include "PrivateSide/Storage/PlaybackStorage.hpp"

#include <utility>
#include <vector>

#include "PrivateSide/Configuration/SessionIdentifier.hpp"

namespace mireth {

using platform::FileError;
using platform::FileResult;

PlaybackStorage::PlaybackStorage(MirethLog& log, std::shared_ptr<platform::FileManager> fileManager)
    : log_(log), fileManager_(std::move(fileManager)) {}

FileResult<std::filesystem::path> PlaybackStorage::getPlaybackFileURL(const std::string& sessionId,
                                                                      std::int64_t chunkNumber) {
    if (!isValidSessionIdentifier(sessionId)) {
        return std::unexpected(FileError{"The session id cannot be part of a file name."});
    }
    auto directory = accessMirethDirectory();
    if (!directory) {
        return directory;
    }
    return *directory / (sessionId + "-" + std::to_string(chunkNumber) + ".mp4");
}

void PlaybackStorage::deleteAll() {
    const auto directory = accessMirethDirectory();
    const auto files =
        directory ? fileManager_->contentsOfDirectory(*directory)
                  : FileResult<std::vector<std::filesystem::path>>(std::unexpected(directory.error()));
    if (!files) {
        log_.error(LogTag::playback, "Failed to retrieve chunk files to delete");
        return;
    }
    for (const auto& file : *files) {
        if (const auto removed = fileManager_->removeItem(file)) {
            log_.info(LogTag::playback, "Removed file.", {{"filePath", file.string()}});
        } else {
            log_.error(LogTag::playback, "Could not remove file.",
                       {{"filePath", file.string()}, {"errorDetails", removed.error().description}});
        }
    }
}

void PlaybackStorage::deleteFile(const std::string& sessionId, std::int64_t chunkNumber) {
    if (const auto file = getPlaybackFileURL(sessionId, chunkNumber)) {
        (void)fileManager_->removeItem(*file);
    }
}

FileResult<std::int64_t> PlaybackStorage::getCount() {
    const auto directory = accessMirethDirectory();
    if (!directory) {
        return std::unexpected(directory.error());
    }
    const auto files = fileManager_->contentsOfDirectory(*directory);
    if (!files) {
        return std::unexpected(files.error());
    }
    return static_cast<std::int64_t>(files->size());
}

FileResult<std::filesystem::path> PlaybackStorage::getCachesDirectory() {
    auto directory = fileManager_->userCachesDirectory();
    if (!directory) {
        log_.error(LogTag::playback, "Cannot create the output URL");
    }
    return directory;
}

FileResult<std::filesystem::path> PlaybackStorage::accessMirethDirectory() {
    const auto caches = getCachesDirectory();
    if (!caches) {
        return caches;
    }
    // Also when they exist: what stands there may be a link, which is refused. Files below it would be
    // someone else's.
    std::filesystem::path directory = *caches;
    for (const char* component : {"mireth", "playback"}) {
        directory /= component;
        if (const auto created = fileManager_->createDirectory(directory); !created) {
            return std::unexpected(created.error());
        }
    }
    return directory;
}

}  // namespace mireth
