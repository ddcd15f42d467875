// The files that PosixFileManager creates: complete before they have their name.
#pragma once

#include <memory>
#include <string>

#include "MirethVex/Platform/FileManager.hpp"

namespace mireth::platform {

/// Begins the file `name` in `directory`, which must be a directory and no link. `path` is what error texts
/// call the file. `mayBeUnnamed`: use a file without a name when the file system has such files.
FileResult<std::unique_ptr<PendingFile>> makePendingFile(const std::string& directory,
                                                         const std::string& name, const std::string& path,
                                                         bool mayBeUnnamed);

}  // namespace mireth::platform
