// The folder of video files beside the database. Names are the receiver's own; a file without a row in the
// database is an orphan and is swept at the next start. Used by SqliteStore.
#pragma once

#include <cstdint>
#include <expected>
#include <memory>
#include <set>
#include <string>
#include <string_view>

#include "base/UniqueFd.hpp"
#include "store/Store.hpp"
#include "video/DiskBudget.hpp"
#include "video/FileSystem.hpp"

namespace mireth::receiver {

/// A video file that exists under its final name already, but that nothing refers to yet. Removed with this
/// object unless `keep` was called.
class VideoFile final : public IncomingVideo {
  public:
    /// `folder` is the open directory; `file` was created in it as `name`. `budget` and `files` outlive the
    /// file.
    VideoFile(int folder, UniqueFd file, std::string name, DiskBudget& budget, FileSystem& files);
    ~VideoFile() override;

    Stored<bool> append(std::string_view bytes) override;
    std::uint64_t size() const override { return size_; }
    bool readAt(std::uint64_t offset, std::span<unsigned char> into) override;

    /// Makes the bytes and the name durable; false when there is no room left.
    Stored<bool> sync();
    /// The file stays when this object goes.
    void keep() { kept_ = true; }
    bool isKept() const { return kept_; }

    const std::string& name() const { return name_; }
    /// SHA-256 of the bytes so far, in hexadecimal.
    Stored<std::string> digest() const;

  private:
    class Digest;

    const int folder_;
    DiskBudget& budget_;
    FileSystem& files_;
    const UniqueFd file_;
    const std::string name_;
    std::unique_ptr<Digest> digest_;
    std::uint64_t size_ = 0;
    bool kept_ = false;
};

class VideoFolder {
  public:
    /// Opens `path`, making it (0700) when it is absent. `budget` and `files` outlive the folder.
    static Stored<VideoFolder> open(const std::string& path, DiskBudget& budget, FileSystem& files);

    /// A new, empty file with mode 0600; null when there is no room left. It must not outlive the folder.
    Stored<std::unique_ptr<VideoFile>> create(const std::string& identifier) const;
    /// A kept file, to be read; it stays readable when it is removed meanwhile.
    Stored<std::unique_ptr<ByteSource>> read(const std::string& name) const;
    /// Removes a file; it is no harm when it is gone already.
    void remove(const std::string& name) const;
    /// Removes every file that `known` does not name and counts those that stay against the budget; returns
    /// how many it removed. Once, before anything is created.
    Stored<std::int64_t> sweep(const std::set<std::string>& known) const;
    std::string pathOf(const std::string& name) const { return path_ + "/" + name; }

  private:
    VideoFolder(std::string path, UniqueFd folder, DiskBudget& budget, FileSystem& files);

    std::uint64_t sizeOf(const std::string& name) const;

    std::string path_;
    UniqueFd folder_;
    DiskBudget* budget_;
    FileSystem* files_;
};

}  // namespace mireth::receiver
