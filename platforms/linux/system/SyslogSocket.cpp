#include "platforms/linux/system/SyslogSocket.hpp"

#include <time.h>
#include <unistd.h>

#include <array>
#include <cstdio>

#include "platforms/linux/system/DatagramSocket.hpp"

namespace mireth::platform {

namespace {

constexpr std::size_t maxRecordBytes = std::size_t{8} * 1024;
constexpr int facilityUser = 1;

/// "May  1 10:20:30", local time. strftime would use the host's locale for the month.
std::string timestamp() {
    constexpr std::array months{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const time_t now = time(nullptr);
    tm local{};
    localtime_r(&now, &local);
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%s %2d %02d:%02d:%02d",
                  months.at(static_cast<std::size_t>(local.tm_mon)), local.tm_mday, local.tm_hour,
                  local.tm_min, local.tm_sec);
    return text.data();
}

void appendEscaped(std::string& record, std::string_view text) {
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte >= 0x20 && byte != 0x7F) {
            record += character;
            continue;
        }
        record += '#';
        record += static_cast<char>('0' + (byte >> 6));
        record += static_cast<char>('0' + ((byte >> 3) & 7));
        record += static_cast<char>('0' + (byte & 7));
    }
}

}  // namespace

void SyslogSocket::write(int severity, std::string_view identifier, std::string_view message) const {
    const auto socket = connectDatagramSocket(path_);
    if (!socket) {
        return;
    }
    std::string record = "<" + std::to_string(facilityUser * 8 + severity) + ">" + timestamp() + " ";
    appendEscaped(record, identifier.substr(0, maxRecordBytes));
    record += "[" + std::to_string(getpid()) + "]: ";
    appendEscaped(record, message.substr(0, maxRecordBytes));
    sendOrDrop(socket, std::string_view(record).substr(0, maxRecordBytes));
}

}  // namespace mireth::platform
