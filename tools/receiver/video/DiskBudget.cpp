// Asks the file system each time: others may fill it too.
#include "video/DiskBudget.hpp"

#include <sys/stat.h>
#include <sys/statvfs.h>

namespace mireth::receiver {
namespace {

std::uint64_t sizeOf(const std::string& path) {
    struct stat facts{};
    return ::stat(path.c_str(), &facts) == 0 ? static_cast<std::uint64_t>(facts.st_size) : 0;
}

}  // namespace

DiskBudget::DiskBudget(const std::string& directory, DiskLimits limits)
    : directory_(directory),
      database_(directory + "/receiver.db"),
      log_(directory + "/receiver.db-wal"),
      limits_(limits) {}

bool DiskBudget::take(std::uint64_t bytes) {
    if (fits(videoBytes_.fetch_add(bytes) + bytes, bytes)) {
        return true;
    }
    giveBack(bytes);
    return false;
}

std::uint64_t DiskBudget::databaseBytes() const {
    return sizeOf(database_) + sizeOf(log_);
}

std::uint64_t DiskBudget::freeBytes() const {
    struct statvfs facts{};
    return ::statvfs(directory_.c_str(), &facts) == 0 ? facts.f_bavail * facts.f_frsize : 0;
}

bool DiskBudget::fits(std::uint64_t videoBytes, std::uint64_t more) const {
    const bool within = !limits_.most || videoBytes + databaseBytes() <= *limits_.most;
    return within && (limits_.keepFree == 0 || freeBytes() >= limits_.keepFree + more);
}

}  // namespace mireth::receiver
