// What a session leaves behind: as the model foretells it, and as the library brought it about.
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace mireth::model {

using Json = nlohmann::ordered_json;

struct Outcome {
    /// The events as they reach the service, each with its session, such as `S1 {"timestamp":…}`.
    std::vector<std::string> events;
    /// Answers of calls and error lines with the millisecond in which they came, such as
    /// `1500 ms pauseRecording success`.
    std::vector<std::string> lines;

    bool operator==(const Outcome&) const = default;
};

/// `event` with every float narrowed to 32 bits, as targets are, and whole numbers without a fraction: equal
/// numbers become equal texts.
Json canonical(Json event);

std::string eventLine(const std::string& sessionId, const Json& event);
std::string answerLine(std::int64_t atMillis, const std::string& call, const std::string& result);
std::string errorLine(std::int64_t atMillis, const std::string& text);

/// Both lists of both outcomes, one below the other, with the lines that differ marked.
std::string describeDifference(const Outcome& expected, const Outcome& actual);

}  // namespace mireth::model
