// Writes lines to the plain system log. Used by JournalSystemLog where there is no journal.
#pragma once

#include <string>
#include <string_view>

namespace mireth::platform {

/// Speaks to the local log socket itself instead of through syslog(3): that call shares one identity and
/// one facility with the whole process, which are the host's, and may wait for the log's reader.
class SyslogSocket {
  public:
    /// `path` is where the log's reader listens, /dev/log as a rule.
    explicit SyslogSocket(std::string path) : path_(std::move(path)) {}

    /// One record (RFC 3164 as spoken on the local socket) of facility "user". `severity` as in RFC 5424:
    /// 6 info, 3 error. Control characters of `message` are written as '#' and three octal digits; a record
    /// is cut at 8 KiB. Dropped when nobody listens or the reader has fallen behind. Any thread.
    void write(int severity, std::string_view identifier, std::string_view message) const;

  private:
    const std::string path_;
};

}  // namespace mireth::platform
