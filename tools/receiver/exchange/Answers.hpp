// The fixed answer bodies that several endpoints give.
#pragma once

#include <string>

#include "exchange/Exchange.hpp"

namespace mireth::receiver {

/// The session-replay answers whose only member is a status: "SUCCESS", "THROTTLED" or "ERROR".
inline Answer statusAnswer(const char* status, int httpStatus = 200) {
    return {.status = httpStatus, .body = R"({"status":")" + std::string(status) + R"("})"};
}

}  // namespace mireth::receiver
