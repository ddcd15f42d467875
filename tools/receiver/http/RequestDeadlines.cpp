// Each deadline is set by its own event; none is folded into another.
#include "http/RequestDeadlines.hpp"

#include <algorithm>

namespace mireth::receiver {
namespace {

// An answer may take as long as its bytes take at this rate.
constexpr std::uint64_t answerRate = std::uint64_t{32} * 1024;
constexpr std::chrono::seconds lingerTime{2};

}  // namespace

RequestDeadlines::RequestDeadlines(const Limits& limits, const StopSignal& stop, Clock::time_point now)
    : stop_(stop),
      idleTime_(limits.idleSeconds),
      request_(now + std::chrono::seconds(limits.requestSeconds)),
      head_(now + std::chrono::seconds(limits.headSeconds)) {}

bool RequestDeadlines::answerBegins(Clock::time_point now) {
    if (answer_) {
        return false;
    }
    answer_ = std::max(request_, now + idleTime_);
    return true;
}

void RequestDeadlines::moved(std::uint64_t bytes) {
    if (answer_) {
        *answer_ += std::chrono::milliseconds(bytes * 1000 / answerRate);
    }
}

void RequestDeadlines::lingerBegins(Clock::time_point now) {
    linger_ = now + lingerTime;
}

RequestDeadlines::Clock::time_point RequestDeadlines::next() const {
    return std::min({head_, answer_.value_or(request_), idle_, linger_, stop_.deadline()});
}

}  // namespace mireth::receiver
