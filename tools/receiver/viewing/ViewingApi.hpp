// What the page asks for: the list of sessions, one session's replay and its videos, and its removal.
// docs/receiver-api.md describes it. The router hands every request under "/api" here.
#pragma once

#include <string>

#include "base/Turns.hpp"
#include "exchange/Exchange.hpp"
#include "exchange/RequestTarget.hpp"
#include "exchange/Route.hpp"
#include "service/Services.hpp"
#include "viewing/VideoAnswers.hpp"

namespace mireth::receiver {

/// Any thread may call.
class ViewingApi {
  public:
    explicit ViewingApi(Services services) : services_(services), videos_(services) {}

    /// `target` is the head's, its first segment "api".
    Route begin(const RequestHead& head, const RequestTarget& target) const;

  private:
    Answer answer(const RequestHead& head, const RequestTarget& target) const;
    Answer sessions(const RequestHead& head, const RequestTarget& target) const;
    Answer facets(const RequestHead& head) const;
    Answer ofSession(const RequestHead& head, const RequestTarget& target) const;
    Answer replay(const RequestHead& head, const std::string& id) const;
    Answer timeline(const std::string& id) const;
    Answer remove(const std::string& id) const;

    const Services services_;
    const VideoAnswers videos_;
    mutable Turns building_{2};  // of replays
};

}  // namespace mireth::receiver
