#include "model/Outcome.hpp"

#include <cmath>

namespace mireth::model {

namespace {

void makeCanonical(Json& value) {
    if (value.is_structured()) {
        for (auto& part : value) {
            makeCanonical(part);
        }
    } else if (value.is_number_float()) {
        const double narrowed = static_cast<float>(value.get<double>());
        constexpr double largestWhole = 1e15;
        if (std::trunc(narrowed) == narrowed && std::abs(narrowed) < largestWhole) {
            value = static_cast<std::int64_t>(narrowed);
        } else {
            value = narrowed;
        }
    }
}

std::string millis(std::int64_t atMillis) {
    return std::to_string(atMillis) + " ms ";
}

/// `lines`, those marked that are not the same in `others`.
std::string listed(const std::vector<std::string>& lines, const std::vector<std::string>& others) {
    std::string result;
    for (std::size_t index = 0; index < lines.size(); ++index) {
        const bool isSame = index < others.size() && others[index] == lines[index];
        result += (isSame ? "    " : "  ! ") + lines[index] + "\n";
    }
    return lines.empty() ? "    (nothing)\n" : result;
}

}  // namespace

Json canonical(Json event) {
    makeCanonical(event);
    return event;
}

std::string eventLine(const std::string& sessionId, const Json& event) {
    return sessionId + " " + canonical(event).dump();
}

std::string answerLine(std::int64_t atMillis, const std::string& call, const std::string& result) {
    return millis(atMillis) + call + " " + result;
}

std::string errorLine(std::int64_t atMillis, const std::string& text) {
    return millis(atMillis) + "error \"" + text + "\"";
}

std::string describeDifference(const Outcome& expected, const Outcome& actual) {
    return "events by the rules:\n" + listed(expected.events, actual.events) + "events of the library:\n" +
           listed(actual.events, expected.events) + "answers and error lines by the rules:\n" +
           listed(expected.lines, actual.lines) + "answers and error lines of the library:\n" +
           listed(actual.lines, expected.lines);
}

}  // namespace mireth::model
