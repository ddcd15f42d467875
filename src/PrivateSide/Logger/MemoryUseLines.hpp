// How a long-lived object tells of its beginning and its end.
#pragma once

#include <string_view>

#include "PrivateSide/Logger/MirethLog.hpp"

namespace mireth {

/// Writes the memory-use lines of the object it is a member of.
class MemoryUseLines {
  public:
    /// `file` must be a literal.
    MemoryUseLines(MirethLog& log, std::string_view file);
    ~MemoryUseLines();
    MemoryUseLines(const MemoryUseLines&) = delete;
    MemoryUseLines& operator=(const MemoryUseLines&) = delete;

  private:
    MirethLog& log_;
    std::string_view file_;
};

}  // namespace mireth
