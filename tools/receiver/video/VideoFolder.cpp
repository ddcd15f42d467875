// Video files by descriptor, relative to their folder, never through a link.
#include "video/VideoFolder.hpp"

#include <dirent.h>
#include <fcntl.h>
#include <openssl/evp.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <system_error>

#include "video/OpenFile.hpp"

namespace mireth::receiver {
namespace {

std::unexpected<std::string> failure(const std::string& what) {
    return std::unexpected(what + ": " + std::generic_category().message(errno));
}

// Any step may be the one that finds out: some file systems take bytes first and look for room when syncing.
bool foundNoRoom() {
    return errno == ENOSPC || errno == EDQUOT;
}

}  // namespace

class VideoFile::Digest {
  public:
    Digest() : context_(EVP_MD_CTX_new(), EVP_MD_CTX_free) {
        usable_ = context_ != nullptr && EVP_DigestInit_ex(context_.get(), EVP_sha256(), nullptr) == 1;
    }
    void add(std::string_view bytes) {
        usable_ = usable_ && EVP_DigestUpdate(context_.get(), bytes.data(), bytes.size()) == 1;
    }
    Stored<std::string> text() const {
        const std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> copy(EVP_MD_CTX_new(), EVP_MD_CTX_free);
        std::array<unsigned char, EVP_MAX_MD_SIZE> bytes{};
        unsigned int count = 0;
        if (!usable_ || !copy || EVP_MD_CTX_copy_ex(copy.get(), context_.get()) != 1 ||
            EVP_DigestFinal_ex(copy.get(), bytes.data(), &count) != 1) {
            return std::unexpected("a video's digest cannot be computed");
        }
        constexpr std::string_view digits = "0123456789abcdef";
        std::string text;
        for (unsigned int i = 0; i < count; ++i) {
            text += digits[bytes[i] >> 4U];
            text += digits[bytes[i] & 15U];
        }
        return text;
    }

  private:
    std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> context_;
    bool usable_ = false;
};

VideoFile::VideoFile(int folder, UniqueFd file, std::string name, DiskBudget& budget, FileSystem& files)
    : folder_(folder),
      budget_(budget),
      files_(files),
      file_(std::move(file)),
      name_(std::move(name)),
      digest_(std::make_unique<Digest>()) {}

VideoFile::~VideoFile() {
    if (!kept_) {
        files_.remove(folder_, name_.c_str());
        budget_.giveBack(size_);
    }
}

Stored<bool> VideoFile::append(std::string_view bytes) {
    if (!budget_.take(bytes.size())) {
        return false;
    }
    size_ += bytes.size();
    digest_->add(bytes);
    while (!bytes.empty()) {
        const ssize_t written = files_.write(file_.get(), bytes);
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written < 0 && foundNoRoom()) {
            return false;
        }
        if (written < 0) {
            return failure("cannot write the video " + name_);
        }
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

bool VideoFile::readAt(std::uint64_t offset, std::span<unsigned char> into) {
    return readFully(file_.get(), offset, into);
}

Stored<bool> VideoFile::sync() {
    // The folder too: without that a crash can leave bytes that no name leads to.
    if (files_.sync(file_.get()) == 0 && files_.sync(folder_) == 0) {
        return true;
    }
    return foundNoRoom() ? Stored<bool>(false) : failure("cannot make the video " + name_ + " durable");
}

Stored<std::string> VideoFile::digest() const {
    return digest_->text();
}

VideoFolder::VideoFolder(std::string path, UniqueFd folder, DiskBudget& budget, FileSystem& files)
    : path_(std::move(path)), folder_(std::move(folder)), budget_(&budget), files_(&files) {}

Stored<VideoFolder> VideoFolder::open(const std::string& path, DiskBudget& budget, FileSystem& files) {
    if (::mkdir(path.c_str(), 0700) != 0 && errno != EEXIST) {
        return failure("cannot make the folder " + path);
    }
    UniqueFd folder(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (!folder || ::fchmod(folder.get(), 0700) != 0) {
        return failure("cannot open the folder " + path);
    }
    return VideoFolder(path, std::move(folder), budget, files);
}

Stored<std::unique_ptr<VideoFile>> VideoFolder::create(const std::string& identifier) const {
    std::string name = identifier + ".mp4";
    UniqueFd file(files_->create(folder_.get(), name.c_str()));
    if (!file && foundNoRoom()) {
        return nullptr;
    }
    if (!file) {
        return failure("cannot make the video " + pathOf(name));
    }
    return std::make_unique<VideoFile>(folder_.get(), std::move(file), std::move(name), *budget_, *files_);
}

Stored<std::unique_ptr<ByteSource>> VideoFolder::read(const std::string& name) const {
    auto open =
        OpenFile::of(UniqueFd(::openat(folder_.get(), name.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC)));
    if (!open) {
        return std::unexpected("cannot open the video " + pathOf(name) + ": " + open.error());
    }
    return std::move(*open);
}

void VideoFolder::remove(const std::string& name) const {
    const auto size = sizeOf(name);
    if (files_->remove(folder_.get(), name.c_str()) == 0) {
        budget_->giveBack(size);
    }
}

std::uint64_t VideoFolder::sizeOf(const std::string& name) const {
    struct stat facts{};
    const bool there = ::fstatat(folder_.get(), name.c_str(), &facts, AT_SYMLINK_NOFOLLOW) == 0;
    return there ? static_cast<std::uint64_t>(facts.st_size) : 0;
}

Stored<std::int64_t> VideoFolder::sweep(const std::set<std::string>& known) const {
    // A descriptor of its own: reading a directory moves its position.
    const int own = ::openat(folder_.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const std::unique_ptr<DIR, int (*)(DIR*)> listing(own < 0 ? nullptr : ::fdopendir(own), ::closedir);
    if (!listing) {
        return failure("cannot read the folder " + path_);
    }
    std::int64_t removed = 0;
    while (const dirent* const entry = ::readdir(listing.get())) {
        const std::string name(static_cast<const char*>(entry->d_name));
        if (known.contains(name)) {
            budget_->add(sizeOf(name));
        } else if (name.ends_with(".mp4")) {
            if (files_->remove(folder_.get(), name.c_str()) != 0) {
                return failure("cannot remove the orphan " + pathOf(name));
            }
            ++removed;
        }
    }
    return removed;
}

}  // namespace mireth::receiver
