// A file manager that keeps files in memory and fails where a test wants it to.
#pragma once

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "MirethVex/Platform/FileManager.hpp"

namespace mireth::tests {

/// Must outlive the files it hands out. One thread at a time, other than the contract has it: tests look into
/// its maps. For the same reason it has no links, modes or owners.
class MemoryFileManager final : public platform::FileManager {
  public:
    /// What a test puts here has the directories above it.
    std::map<std::filesystem::path, std::string> files;
    std::set<std::filesystem::path> directories;
    /// Set to have the operation fail with these words.
    std::string createFailure;
    std::string writeFailure;
    std::string commitFailure;

    platform::FileResult<std::filesystem::path> userCachesDirectory() override {
        return std::filesystem::path("/caches");
    }
    bool itemExists(const std::filesystem::path& path) override {
        return files.contains(path) || isDirectory(path);
    }
    platform::FileResult<void> createDirectory(const std::filesystem::path& path) override {
        const auto whole = path.has_filename() ? path : path.parent_path();
        if (!isUsable(whole)) {
            return failure("create directory", path, "no usable name");
        }
        std::set<std::filesystem::path> missing;
        for (auto directory = whole; !isDirectory(directory); directory = directory.parent_path()) {
            if (files.contains(directory)) {
                return failure("create directory", path, "a file is in the way");
            }
            missing.insert(directory);
        }
        directories.merge(missing);
        return {};
    }
    platform::FileResult<std::vector<std::filesystem::path>> contentsOfDirectory(
        const std::filesystem::path& path) override {
        if (!isDirectory(path)) {
            return failure("list", path, "no such directory");
        }
        std::set<std::filesystem::path> entries;
        for (const auto& [file, content] : files) {
            entries.insert(entryOf(path, file).value_or(path));
        }
        for (const auto& directory : directories) {
            entries.insert(entryOf(path, directory).value_or(path));
        }
        entries.erase(path);
        return std::vector<std::filesystem::path>(entries.begin(), entries.end());
    }
    platform::FileResult<void> removeItem(const std::filesystem::path& path) override {
        if (files.erase(path) == 0) {
            return failure("remove", path, "no such file");
        }
        return {};
    }
    platform::FileResult<std::string> readFile(const std::filesystem::path& path,
                                               std::uint64_t maxBytes) override {
        const auto found = files.find(path);
        if (found == files.end()) {
            return failure("read", path, "no such file");
        }
        if (found->second.size() > maxBytes) {
            return failure("read", path, "too large");
        }
        return found->second;
    }
    platform::FileResult<std::unique_ptr<platform::PendingFile>> createFile(
        const std::filesystem::path& path) override {
        if (!createFailure.empty()) {
            return failure("create", path, createFailure);
        }
        if (!isUsable(path)) {
            return failure("create", path, "no usable name");
        }
        if (!isDirectory(path.parent_path())) {
            return failure("create", path, "no such directory");
        }
        return std::make_unique<Pending>(*this, path);
    }

  private:
    bool isDirectory(const std::filesystem::path& path) const {
        const auto isIn = [&path](const auto& file) { return entryOf(path, file.first).has_value(); };
        return path == "/" || directories.contains(path) || std::ranges::any_of(files, isIn);
    }
    /// The entry of `directory` that is `item`, or has it somewhere below.
    static std::optional<std::filesystem::path> entryOf(const std::filesystem::path& directory,
                                                        const std::filesystem::path& item) {
        for (auto entry = item; entry.has_relative_path(); entry = entry.parent_path()) {
            if (entry.parent_path() == directory) {
                return entry;
            }
        }
        return std::nullopt;
    }
    /// The last component can name something new.
    static bool isUsable(const std::filesystem::path& path) {
        const std::string name = path.filename().string();
        return path.is_absolute() && !name.empty() && name != "." && name != ".." && name.size() <= 255 &&
               !name.contains('\0');
    }

    static std::unexpected<platform::FileError> failure(const std::string& operation,
                                                        const std::filesystem::path& path,
                                                        const std::string& reason) {
        return std::unexpected(platform::FileError{operation + " " + path.string() + ": " + reason});
    }

    class Pending final : public platform::PendingFile {
      public:
        Pending(MemoryFileManager& manager, std::filesystem::path path)
            : manager_(manager), path_(std::move(path)) {}
        platform::FileResult<void> write(std::span<const std::byte> bytes) override {
            if (isDone_) {
                return failure("write", path_, "the file is complete");
            }
            if (!manager_.writeFailure.empty()) {
                return failure("write", path_, manager_.writeFailure);
            }
            content_.append(reinterpret_cast<const char*>(bytes.data()), bytes.size());
            return {};
        }
        platform::FileResult<void> commit() override {
            if (!manager_.commitFailure.empty()) {
                return failure("commit", path_, manager_.commitFailure);
            }
            if (isDone_ || manager_.itemExists(path_)) {
                return failure("commit", path_, "file exists");
            }
            isDone_ = true;
            manager_.files[path_] = content_;
            return {};
        }

      private:
        MemoryFileManager& manager_;
        std::filesystem::path path_;
        std::string content_;
        bool isDone_ = false;
    };
};

}  // namespace mireth::tests
