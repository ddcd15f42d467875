// Words for what the file system answers. Used by the parts of PosixFileManager.
#pragma once

#include <cerrno>
#include <filesystem>
#include <string>
#include <string_view>

#include "MirethVex/Platform/FileManager.hpp"

namespace mireth::platform {

/// "cannot <operation> '<path>': <reason>".
inline std::unexpected<FileError> fileFailure(std::string_view operation, const std::string& path,
                                              std::string_view reason) {
    std::string text = "cannot ";
    text.append(operation).append(" '").append(path).append("': ").append(reason);
    return std::unexpected(FileError{std::move(text)});
}

/// The same with the reason that `error`, a value of errno, stands for.
inline std::unexpected<FileError> fileFailure(std::string_view operation, const std::string& path,
                                              int error) {
    return fileFailure(operation, path, std::generic_category().message(error));
}

}  // namespace mireth::platform
