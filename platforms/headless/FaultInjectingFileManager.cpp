// Faults in front of a real file manager.
#include "MirethVex/Headless/FaultInjectingFileManager.hpp"

#include <algorithm>
#include <utility>

namespace mireth::headless {

using platform::FileError;
using platform::FileResult;
using platform::PendingFile;

struct FaultInjectingFileManager::Faults {
    struct Fault {
        std::size_t times = 0;
        std::string description;
    };
    static constexpr std::size_t operationCount = 8;

    std::mutex mutex;
    std::optional<std::uint64_t> budget;        // guarded by mutex
    std::array<Fault, operationCount> planned;  // guarded by mutex

    /// The planned failure of this call, if one is due.
    std::optional<FileError> next(FileOperation operation, const std::filesystem::path& path) {
        const std::lock_guard lock(mutex);
        Fault& fault = planned.at(static_cast<std::size_t>(operation));
        if (fault.times == 0) {
            return std::nullopt;
        }
        --fault.times;
        return FileError{path.string() + ": " + fault.description};
    }

    /// How many of `wanted` bytes fit; they are taken off the budget.
    std::size_t take(std::size_t wanted) {
        const std::lock_guard lock(mutex);
        if (!budget) {
            return wanted;
        }
        const auto taken = static_cast<std::size_t>(std::min<std::uint64_t>(wanted, *budget));
        *budget -= taken;
        return taken;
    }
};

class FaultInjectingFileManager::File final : public PendingFile {
  public:
    File(std::unique_ptr<PendingFile> inner, std::shared_ptr<Faults> faults, std::filesystem::path path)
        : inner_(std::move(inner)), faults_(std::move(faults)), path_(std::move(path)) {}

    FileResult<void> write(std::span<const std::byte> bytes) override {
        if (auto fault = faults_->next(FileOperation::write, path_)) {
            return std::unexpected(std::move(*fault));
        }
        const std::size_t fits = faults_->take(bytes.size());
        auto written = inner_->write(bytes.first(fits));
        if (written && fits < bytes.size()) {
            return std::unexpected(FileError{path_.string() + ": No space left on device"});
        }
        return written;
    }

    FileResult<void> commit() override {
        if (auto fault = faults_->next(FileOperation::commit, path_)) {
            return std::unexpected(std::move(*fault));
        }
        return inner_->commit();
    }

  private:
    const std::unique_ptr<PendingFile> inner_;
    const std::shared_ptr<Faults> faults_;
    const std::filesystem::path path_;
};

FaultInjectingFileManager::FaultInjectingFileManager(std::shared_ptr<platform::FileManager> inner)
    : inner_(std::move(inner)), faults_(std::make_shared<Faults>()) {}

void FaultInjectingFileManager::setByteBudget(std::optional<std::uint64_t> bytes) {
    const std::lock_guard lock(faults_->mutex);
    faults_->budget = bytes;
}

void FaultInjectingFileManager::failNext(FileOperation operation, std::size_t times,
                                         std::string description) {
    const std::lock_guard lock(faults_->mutex);
    faults_->planned.at(static_cast<std::size_t>(operation)) = {times, std::move(description)};
}

FileResult<std::filesystem::path> FaultInjectingFileManager::userCachesDirectory() {
    if (auto fault = faults_->next(FileOperation::userCachesDirectory, "caches directory")) {
        return std::unexpected(std::move(*fault));
    }
    return inner_->userCachesDirectory();
}

bool FaultInjectingFileManager::itemExists(const std::filesystem::path& path) {
    return inner_->itemExists(path);
}

FileResult<void> FaultInjectingFileManager::createDirectory(const std::filesystem::path& path) {
    if (auto fault = faults_->next(FileOperation::createDirectory, path)) {
        return std::unexpected(std::move(*fault));
    }
    return inner_->createDirectory(path);
}

FileResult<std::vector<std::filesystem::path>> FaultInjectingFileManager::contentsOfDirectory(
    const std::filesystem::path& path) {
    if (auto fault = faults_->next(FileOperation::contentsOfDirectory, path)) {
        return std::unexpected(std::move(*fault));
    }
    return inner_->contentsOfDirectory(path);
}

FileResult<void> FaultInjectingFileManager::removeItem(const std::filesystem::path& path) {
    if (auto fault = faults_->next(FileOperation::removeItem, path)) {
        return std::unexpected(std::move(*fault));
    }
    return inner_->removeItem(path);
}

FileResult<std::string> FaultInjectingFileManager::readFile(const std::filesystem::path& path,
                                                            std::uint64_t maxBytes) {
    if (auto fault = faults_->next(FileOperation::readFile, path)) {
        return std::unexpected(std::move(*fault));
    }
    return inner_->readFile(path, maxBytes);
}

FileResult<std::unique_ptr<PendingFile>> FaultInjectingFileManager::createFile(
    const std::filesystem::path& path) {
    if (auto fault = faults_->next(FileOperation::createFile, path)) {
        return std::unexpected(std::move(*fault));
    }
    auto file = inner_->createFile(path);
    if (!file) {
        return file;
    }
    return std::make_unique<File>(std::move(*file), faults_, path);
}

}  // namespace mireth::headless
