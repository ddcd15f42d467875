// The case names of the public results.
#include "MirethVex/PublicSide/DataModels/Enums/InitializationResult.hpp"
#include "MirethVex/PublicSide/DataModels/Enums/SessionCloseResult.hpp"
#include "MirethVex/PublicSide/DataModels/Enums/SessionPauseResult.hpp"
#include "MirethVex/PublicSide/DataModels/Enums/SessionResumeResult.hpp"
#include "MirethVex/PublicSide/DataModels/Enums/SessionStartResult.hpp"

namespace mireth {

std::string_view caseName(InitializationResult result) noexcept {
    switch (result) {
        case InitializationResult::success:
            return "success";
        case InitializationResult::paramsRequired:
            return "paramsRequired";
        case InitializationResult::cannotGetKeyWindow:
            return "cannotGetKeyWindow";
        case InitializationResult::sessionAlreadyRunning:
            return "sessionAlreadyRunning";
    }
    return "";
}

std::string_view caseName(SessionStartResult::Kind kind) noexcept {
    switch (kind) {
        case SessionStartResult::Kind::success:
            return "success";
        case SessionStartResult::Kind::fail:
            return "fail";
        case SessionStartResult::Kind::alreadyStarted:
            return "alreadyStarted";
        case SessionStartResult::Kind::notInitialized:
            return "notInitialized";
        case SessionStartResult::Kind::samplingRejected:
            return "samplingRejected";
        case SessionStartResult::Kind::sessionReplayNotEnabled:
            return "sessionReplayNotEnabled";
        case SessionStartResult::Kind::unsupportedDevice:
            return "unsupportedDevice";
    }
    return "";
}

std::string_view caseName(SessionCloseResult::Kind kind) noexcept {
    switch (kind) {
        case SessionCloseResult::Kind::success:
            return "success";
        case SessionCloseResult::Kind::fail:
            return "fail";
        case SessionCloseResult::Kind::notStarted:
            return "notStarted";
        case SessionCloseResult::Kind::notInitialized:
            return "notInitialized";
    }
    return "";
}

std::string_view caseName(SessionPauseResult result) noexcept {
    switch (result) {
        case SessionPauseResult::success:
            return "success";
        case SessionPauseResult::notInitialized:
            return "notInitialized";
        case SessionPauseResult::notStarted:
            return "notStarted";
        case SessionPauseResult::alreadyPaused:
            return "alreadyPaused";
    }
    return "";
}

std::string_view caseName(SessionResumeResult result) noexcept {
    switch (result) {
        case SessionResumeResult::success:
            return "success";
        case SessionResumeResult::notInitialized:
            return "notInitialized";
        case SessionResumeResult::notStarted:
            return "notStarted";
        case SessionResumeResult::notPaused:
            return "notPaused";
    }
    return "";
}

}  // namespace mireth
