// How much of the disk the receiver may take. Every byte of a video is asked for here before it is written.
#pragma once

#include <atomic>
#include <cstdint>
#include <optional>
#include <string>

namespace mireth::receiver {

struct DiskLimits {
    /// Most bytes of videos and database together; none: as many as the disk holds.
    std::optional<std::uint64_t> most = std::nullopt;
    /// Bytes that stay free on the file system.
    std::uint64_t keepFree = 0;
};

/// Any thread may call.
class DiskBudget {
  public:
    /// `directory` holds the database.
    DiskBudget(const std::string& directory, DiskLimits limits);

    /// Takes `bytes` for a video, if there is room for them.
    bool take(std::uint64_t bytes);
    /// Counts bytes that are there already.
    void add(std::uint64_t bytes) { videoBytes_ += bytes; }
    void giveBack(std::uint64_t bytes) { videoBytes_ -= bytes; }
    bool hasRoomFor(std::uint64_t bytes) const { return fits(videoBytes_.load() + bytes, bytes); }

    std::uint64_t videoBytes() const { return videoBytes_.load(); }
    /// Of the database and its write-ahead log.
    std::uint64_t databaseBytes() const;
    /// Free on the file system; 0 when that cannot be told.
    std::uint64_t freeBytes() const;

  private:
    bool fits(std::uint64_t videoBytes, std::uint64_t more) const;

    const std::string directory_;
    const std::string database_;
    const std::string log_;
    const DiskLimits limits_;
    std::atomic<std::uint64_t> videoBytes_ = 0;
};

}  // namespace mireth::receiver
