#include "PrivateSide/Logger/MemoryUseLines.hpp"

namespace mireth {

MemoryUseLines::MemoryUseLines(MirethLog& log, std::string_view file) : log_(log), file_(file) {
    log_.objectInit(MemoryUseStatus::initialized, file_);
}

MemoryUseLines::~MemoryUseLines() {
    log_.objectInit(MemoryUseStatus::deinitialized, file_);
}

}  // namespace mireth
