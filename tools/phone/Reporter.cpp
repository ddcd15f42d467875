// The two forms of output: JSON lines, and text for people.
#include "phone/Reporter.hpp"

#include <array>
#include <cmath>
#include <nlohmann/json.hpp>
#include <utility>

namespace mireth::phone {

namespace {

using Json = nlohmann::ordered_json;

/// To the microsecond: finer is noise when time is real.
double toSeconds(Instant at) {
    return static_cast<double>(std::llround(static_cast<double>(at.count()) / 1e3)) / 1e6;
}

class LineWriter {
  public:
    explicit LineWriter(std::FILE* out) : out_(out) {}
    void write(std::string line) {
        line += '\n';
        const std::lock_guard lock(mutex_);
        std::fwrite(line.data(), 1, line.size(), out_);
        std::fflush(out_);
    }

  private:
    std::mutex mutex_;
    std::FILE* const out_;  // guarded by mutex_
};

Json textOrNull(const std::optional<std::string>& text) {
    return text ? Json(*text) : Json();
}

class JsonReporter final : public Reporter {
  public:
    explicit JsonReporter(std::FILE* out) : lines_(out) {}

    void answer(Instant at, const CallAnswer& answer) override {
        Json line{
            {"at", toSeconds(at)}, {"event", "result"}, {"call", answer.call}, {"result", answer.result}};
        if (answer.info) {
            line["message"] = answer.message;
            line["sessionId"] = answer.info->sessionId;
            line["sessionStartTimeMillis"] = answer.info->sessionStartTimeMillis;
        }
        if (answer.isFailure) {
            line["reason"] = textOrNull(answer.reason);
        }
        write(line);
    }

    void log(Instant at, LogTag tag, LogLevel level, const std::string& text) override {
        write({{"at", toSeconds(at)},
               {"event", "log"},
               {"tag", key(tag)},
               {"level", rawValue(level)},
               {"line", text}});
    }

    void end(Instant at, bool hasActiveSession, const std::string& state) override {
        write({{"at", toSeconds(at)},
               {"event", "end"},
               {"hasActiveSession", hasActiveSession},
               {"state", state}});
    }

  private:
    void write(const Json& line) { lines_.write(line.dump(-1, ' ', false, Json::error_handler_t::replace)); }
    LineWriter lines_;
};

/// One line, whatever characters a service put into it.
std::string onOneLine(std::string text) {
    for (char& character : text) {
        if (static_cast<unsigned char>(character) < 0x20 || character == 0x7F) {
            character = ' ';
        }
    }
    return text;
}

std::string clockText(Instant at) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%9.3f s  ", toSeconds(at));
    return text.data();
}

class PlainReporter final : public Reporter {
  public:
    PlainReporter(std::FILE* out, std::FILE* errors) : lines_(out), errors_(errors) {}

    void answer(Instant at, const CallAnswer& answer) override {
        std::string line = clockText(at) + answer.call + ": " + answer.result;
        if (answer.info) {
            line += ". " + answer.message;
        }
        if (answer.reason) {
            line += ". " + *answer.reason;
        }
        lines_.write(onOneLine(std::move(line)));
    }

    void log(Instant at, LogTag tag, LogLevel level, const std::string& text) override {
        if (level == LogLevel::error) {
            errors_.write(onOneLine(clockText(at) + "error in " + std::string(key(tag)) + ": " + text));
        }
    }

    void end(Instant at, bool hasActiveSession, const std::string& state) override {
        lines_.write(clockText(at) + "end: " + state +
                     (hasActiveSession ? ", a session is left running" : ""));
    }

  private:
    LineWriter lines_;
    LineWriter errors_;
};

}  // namespace

CallAnswer CallAnswer::of(std::string call, std::string_view caseName) {
    CallAnswer answer;
    answer.call = std::move(call);
    answer.result = caseName;
    return answer;
}

CallAnswer CallAnswer::of(std::string call, const SessionStartResult& result) {
    CallAnswer answer = of(std::move(call), caseName(result.kind));
    answer.message = result.message;
    answer.info = result.info;
    answer.isFailure = result.kind == SessionStartResult::Kind::fail;
    answer.reason = result.reason;
    return answer;
}

CallAnswer CallAnswer::of(std::string call, const SessionCloseResult& result) {
    CallAnswer answer = of(std::move(call), caseName(result.kind));
    answer.isFailure = result.kind == SessionCloseResult::Kind::fail;
    answer.reason = result.reason;
    return answer;
}

std::unique_ptr<Reporter> makeJsonReporter(std::FILE* out) {
    return std::make_unique<JsonReporter>(out);
}

std::unique_ptr<Reporter> makePlainReporter(std::FILE* out, std::FILE* errors) {
    return std::make_unique<PlainReporter>(out, errors);
}

}  // namespace mireth::phone
