// A file manager that keeps files in memory and fails where a test wants it to.
#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "MirethVex/Platform/FileManager.hpp"

namespace mireth::tests {

/// One thread at a time. Must outlive the files it hands out.
class MemoryFileManager final : public platform::FileManager {
  public:
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
        return files.contains(path) || directories.contains(path);
    }
    platform::FileResult<void> createDirectory(const std::filesystem::path& path) override {
        for (auto directory = path; directory.has_relative_path(); directory = directory.parent_path()) {
            directories.insert(directory);
        }
        return {};
    }
    platform::FileResult<std::vector<std::filesystem::path>> contentsOfDirectory(
        const std::filesystem::path& path) override {
        std::set<std::filesystem::path> entries;
        for (const auto& [file, content] : files) {
            if (file.parent_path() == path) {
                entries.insert(file);
            }
        }
        for (const auto& directory : directories) {
            if (directory.parent_path() == path) {
                entries.insert(directory);
            }
        }
        return std::vector<std::filesystem::path>(entries.begin(), entries.end());
    }
    platform::FileResult<void> removeItem(const std::filesystem::path& path) override {
        if (files.erase(path) + directories.erase(path) == 0) {
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
        return std::make_unique<Pending>(*this, path);
    }

  private:
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
            if (manager_.itemExists(path_)) {
                return failure("commit", path_, "file exists");
            }
            manager_.files[path_] = content_;
            return {};
        }

      private:
        MemoryFileManager& manager_;
        std::filesystem::path path_;
        std::string content_;
    };
};

}  // namespace mireth::tests
