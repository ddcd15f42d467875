// A logger whose lines a test reads and accounts for, each one.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <mutex>
#include <ostream>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "PrivateSide/Logger/MirethLog.hpp"

namespace mireth::test {

struct LogLine {
    LogLevel level;
    LogTag tag;
    std::string text;
    bool operator==(const LogLine&) const = default;
};

inline LogLine infoLine(LogTag tag, std::string text) {
    return {LogLevel::info, tag, std::move(text)};
}

inline LogLine errorLine(LogTag tag, std::string text) {
    return {LogLevel::error, tag, std::move(text)};
}

inline std::ostream& operator<<(std::ostream& out, const LogLine& line) {
    return out << rawValue(line.level) << " " << key(line.tag) << " \"" << line.text << '"';
}

/// Captures what is written through `log()`. All tags are allowed but that of memory use, which most tests do
/// not look at. A line that no `expectLines` has named by the end of the capture's life fails the test, so it
/// stands before the objects that write. Any thread may write.
class LogCapture {
  public:
    explicit LogCapture(std::set<LogTag> allowedTags = {LogTag::lifecycle, LogTag::gesture, LogTag::signal,
                                                        LogTag::playback, LogTag::network,
                                                        LogTag::navigation}) {
        log_.setAllowedTags(allowedTags);
        log_.addLogListener([lines = lines_](LogTag tag, LogLevel level, const std::string& text) {
            const std::lock_guard lock(lines->mutex);
            lines->captured.push_back({level, tag, text});
        });
    }
    ~LogCapture() {
        for (const LogLine& line : take()) {
            ADD_FAILURE() << "A line that nobody expected: " << line;
        }
    }
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;

    MirethLog& log() { return log_; }

    /// The lines since the last call, in order and with none beside them.
    void expectLines(const std::vector<LogLine>& expected) { EXPECT_EQ(take(), expected); }

    /// The lines since the last call, for tests that look closer.
    std::vector<LogLine> take() {
        const std::lock_guard lock(lines_->mutex);
        return std::exchange(lines_->captured, {});
    }

  private:
    class Silent final : public LoggerType {
      public:
        void info(std::string_view) override {}
        void error(std::string_view) override {}
    };

    struct Lines {
        std::mutex mutex;
        std::vector<LogLine> captured;  // guarded by mutex
    };

    const std::shared_ptr<Lines> lines_ = std::make_shared<Lines>();
    MirethLog log_{[](std::string_view, std::string_view) { return std::make_unique<Silent>(); }};
};

}  // namespace mireth::test
