#include "platforms/linux/system/JournalSystemLog.hpp"

#include <sys/stat.h>
// Our own place in the code would say nothing about the line's.
#define SD_JOURNAL_SUPPRESS_LOCATION
#include <sys/uio.h>
#include <systemd/sd-journal.h>

#include <array>
#include <string>

#include "platforms/linux/system/DatagramSocket.hpp"

namespace mireth::platform {

namespace {

constexpr const char* journalSocket = "/run/systemd/journal/socket";

int severity(SystemLogType type) {
    return type == SystemLogType::error ? 3 : 6;
}

std::string field(std::string_view name, std::string_view value) {
    std::string text;
    text.reserve(name.size() + 1 + value.size());
    text.append(name).append(1, '=').append(value);
    return text;
}

}  // namespace

bool JournalSystemLog::hasStructuredLog() const {
    struct stat status{};
    return stat(journalSocket, &status) == 0 && S_ISSOCK(status.st_mode);
}

void JournalSystemLog::writeStructured(std::string_view subsystem, std::string_view category,
                                       SystemLogType type, std::string_view message) {
    std::array<std::string, 4> fields{
        field("MESSAGE", message), field("PRIORITY", std::to_string(severity(type))),
        field("SYSLOG_IDENTIFIER", subsystem), field("MIRETH_CATEGORY", category)};
    std::array<iovec, fields.size()> parts{};
    for (std::size_t i = 0; i < fields.size(); ++i) {
        parts[i] = {fields[i].data(), fields[i].size()};
    }
    const std::lock_guard lock(journalMutex_);
    // The send below waits for a journal that does not read; a look at its queue keeps the caller going.
    if (canSendNow(connectDatagramSocket(journalSocket))) {
        sd_journal_sendv(parts.data(), static_cast<int>(parts.size()));
    }
}

void JournalSystemLog::writeLegacy(std::string_view subsystem, std::string_view category, SystemLogType type,
                                   std::string_view message) {
    std::string text;
    text.append(1, '[').append(category).append("] ").append(message);
    syslog_.write(severity(type), subsystem, text);
}

}  // namespace mireth::platform
