// The system's own files. Used by SqliteStore unless it is given others.
#pragma once

#include "video/FileSystem.hpp"

namespace mireth::receiver {

class SystemFiles final : public FileSystem {
  public:
    int create(int folder, const char* name) override;
    ssize_t write(int file, std::string_view bytes) override;
    int sync(int descriptor) override;
    int remove(int folder, const char* name) override;
};

}  // namespace mireth::receiver
