// The answers of the viewing side that say what was wrong, as JSON for programs with words for people.
#pragma once

#include <string>

#include "base/Environment.hpp"
#include "exchange/Exchange.hpp"

namespace mireth::receiver {

/// `why` holds no character that JSON escapes.
inline std::string errorBody(const std::string& why) {
    return R"({"error":")" + why + R"("})";
}

inline Answer errorAnswer(int status, const std::string& why) {
    return {.status = status, .body = errorBody(why)};
}

/// 500, once the operator has been told why the receiver's own data could not be read.
inline Answer unreadableAnswer(const Environment& environment, const std::string& why) {
    environment.report(why);
    return errorAnswer(500, "the receiver could not read its data");
}

/// 405; `right` is the Allow header.
inline Answer wrongMethodAnswer(const std::string& right) {
    auto answer = errorAnswer(405, "this address answers " + right);
    answer.headers = {{"Allow", right}};
    return answer;
}

/// The header that makes a browser save the answer; `id` is a session's.
inline std::string downloadAs(const std::string& id, const std::string& extension) {
    return "attachment; filename=\"session-" + id + "." + extension + "\"";
}

}  // namespace mireth::receiver
