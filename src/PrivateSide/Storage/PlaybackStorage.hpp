// Keeps the encoded chunk files on disk until they are uploaded: names, counts and deletes them.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

#include "MirethVex/Platform/FileManager.hpp"
#include "PrivateSide/Logger/MirethLog.hpp"

namespace mireth {

/// A store of chunk files. Any thread; the callers keep it off the main one.
class PlaybackStorageProtocol {
  public:
    virtual ~PlaybackStorageProtocol() = default;
    /// Where the chunk's file is or goes; the file is not created, its directory is.
    virtual platform::FileResult<std::filesystem::path> getPlaybackFileURL(const std::string& sessionId,
                                                                           std::int64_t chunkNumber) = 0;
    /// Deletes every stored file. What cannot be deleted is logged and left.
    virtual void deleteAll() = 0;
    /// Deletes one chunk's file. A missing file is no error.
    virtual void deleteFile(const std::string& sessionId, std::int64_t chunkNumber) = 0;
    /// How many files are stored.
    virtual platform::FileResult<std::int64_t> getCount() = 0;
};

/// The store below the user's caches directory, in "/mireth/playback": one file a chunk, named by the session
/// id, "-", the chunk number and ".mp4". A session id that is not a plain file name is refused, whoever
/// passes it.
class PlaybackStorage final : public PlaybackStorageProtocol {
  public:
    PlaybackStorage(MirethLog& log, std::shared_ptr<platform::FileManager> fileManager);

    platform::FileResult<std::filesystem::path> getPlaybackFileURL(const std::string& sessionId,
                                                                   std::int64_t chunkNumber) override;
    void deleteAll() override;
    void deleteFile(const std::string& sessionId, std::int64_t chunkNumber) override;
    platform::FileResult<std::int64_t> getCount() override;

  private:
    platform::FileResult<std::filesystem::path> getCachesDirectory();
    platform::FileResult<std::filesystem::path> accessMirethDirectory();

    MirethLog& log_;
    const std::shared_ptr<platform::FileManager> fileManager_;
};

}  // namespace mireth
