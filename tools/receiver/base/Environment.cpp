// The real environment: system clocks, Boost's UUIDs from the kernel's random source, a guarded stream.
#include "base/Environment.hpp"

#include <boost/uuid/random_generator.hpp>
#include <boost/uuid/uuid_io.hpp>
#include <cstdio>
#include <ctime>
#include <memory>
#include <mutex>
#include <ostream>
#include <vector>

#include "base/PrintableText.hpp"
#include "base/ReportThrottle.hpp"

namespace mireth::receiver {
namespace {

// What is reported may quote a stranger, who must not fill the operator's log.
constexpr std::size_t longestReport = 500;

class Reports {
  public:
    explicit Reports(std::ostream& errors) : errors_(errors) {}
    Reports(const Reports&) = delete;
    Reports& operator=(const Reports&) = delete;
    ~Reports() { write(throttle_.rest()); }

    void add(std::string_view line) {
        const std::lock_guard lock(mutex_);
        write(throttle_.pass(line.substr(0, longestReport), std::chrono::steady_clock::now()));
    }

  private:
    void write(const std::vector<std::string>& lines) {
        for (const auto& line : lines) {
            errors_ << "mireth-receiver: " << printableText(line) << std::endl;
        }
    }

    std::ostream& errors_;
    std::mutex mutex_;
    ReportThrottle throttle_;  // guarded by mutex_
};

}  // namespace

Environment Environment::real(std::ostream& errors) {
    return {
        .wallMillis =
            [] {
                const auto now = std::chrono::system_clock::now().time_since_epoch();
                return std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
            },
        .steadyNow = [] { return std::chrono::steady_clock::now(); },
        .newIdentifier = [] { return boost::uuids::to_string(boost::uuids::random_generator_pure{}()); },
        .report = [reports =
                       std::make_shared<Reports>(errors)](std::string_view line) { reports->add(line); },
    };
}

std::string isoTime(std::int64_t millis) {
    std::int64_t seconds = millis / 1000;
    std::int64_t rest = millis % 1000;
    if (rest < 0) {
        rest += 1000;
        --seconds;
    }
    const auto time = static_cast<std::time_t>(seconds);
    std::tm parts{};
    if (gmtime_r(&time, &parts) == nullptr) {
        return std::to_string(millis);
    }
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02d.%03dZ", parts.tm_year + 1900,
                  parts.tm_mon + 1, parts.tm_mday, parts.tm_hour, parts.tm_min, parts.tm_sec,
                  static_cast<int>(rest));
    return text;
}

}  // namespace mireth::receiver
