#include "PrivateSide/Orchestrator/RemoteResults.hpp"

namespace mireth {

RemoteCreateResult RemoteCreateResult::success(RemoteSessionInfo session) {
    RemoteCreateResult result = of(Kind::success);
    result.session = std::move(session);
    return result;
}

RemoteCreateResult RemoteCreateResult::errorResponse(std::string statusCode) {
    RemoteCreateResult result = of(Kind::errorResponseFromTheApi);
    result.statusCode = std::move(statusCode);
    return result;
}

RemoteCreateResult RemoteCreateResult::fail(std::string reason) {
    RemoteCreateResult result = of(Kind::fail);
    result.reason = std::move(reason);
    return result;
}

RemoteCreateResult RemoteCreateResult::of(Kind kind) {
    RemoteCreateResult result;
    result.kind = kind;
    return result;
}

SessionStartResult RemoteCreateResult::asSessionStartResult() const {
    switch (kind) {
        case Kind::success:
            return SessionStartResult::success("Successfully created session: " + session.sessionId,
                                               {session.sessionId, session.sessionStartTimeMillis});
        case Kind::alreadyExists:
            return SessionStartResult::of(SessionStartResult::Kind::alreadyStarted);
        case Kind::errorResponseFromTheApi:
            return SessionStartResult::fail("Request to API failed. Response status: " + statusCode);
        case Kind::fail:
            return SessionStartResult::fail(reason);
        case Kind::samplingRejected:
            return SessionStartResult::of(SessionStartResult::Kind::samplingRejected);
        case Kind::sessionReplayNotEnabled:
            return SessionStartResult::of(SessionStartResult::Kind::sessionReplayNotEnabled);
        case Kind::failParseDate:
            break;
    }
    return SessionStartResult::fail(std::nullopt);
}

std::string description(const RemoteCreateResult& result) {
    using Kind = RemoteCreateResult::Kind;
    switch (result.kind) {
        case Kind::success:
            return "success(sessionId: " + result.session.sessionId +
                   ", sessionStartTimeMillis: " + std::to_string(result.session.sessionStartTimeMillis) + ")";
        case Kind::alreadyExists:
            return "alreadyExists";
        case Kind::failParseDate:
            return "failParseDate";
        case Kind::errorResponseFromTheApi:
            return "errorResponseFromTheApi(" + result.statusCode + ")";
        case Kind::fail:
            return "fail(" + result.reason.value_or("nil") + ")";
        case Kind::samplingRejected:
            return "samplingRejected";
        case Kind::sessionReplayNotEnabled:
            return "sessionReplayNotEnabled";
    }
    return "";
}

SessionCloseResult RemoteCloseResult::asSessionCloseResult() const {
    return kind == Kind::success ? SessionCloseResult::of(SessionCloseResult::Kind::success)
                                 : SessionCloseResult::fail(reason);
}

}  // namespace mireth
