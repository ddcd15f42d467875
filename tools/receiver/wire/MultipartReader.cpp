// A small state machine over the body's bytes. It is strict: no preamble, no unknown header forms, nothing
// but a line end after the closing delimiter.
#include "wire/MultipartReader.hpp"

#include <algorithm>

#include "base/HeaderParameters.hpp"
#include "wire/PartHeadReader.hpp"

namespace mireth::receiver {
namespace {

constexpr std::size_t longestPartHead = 4096;

bool isBoundaryCharacter(char c) {
    constexpr std::string_view others = "'()+_,-./:=? ";
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
           others.find(c) != std::string_view::npos;
}

}  // namespace

MultipartReader::MultipartReader(const std::string& boundary, PartListener& listener)
    : delimiter_("\r\n--" + boundary), listener_(listener) {}

std::optional<std::string> MultipartReader::boundaryOf(std::string_view contentType) {
    const auto parameters = headerParameters(contentType);
    if (!parameters || !equalsIgnoringCase(parameters->value, "multipart/form-data")) {
        return std::nullopt;
    }
    const auto found = parameters->find("boundary");
    const bool usable = found && !found->empty() && found->size() <= 70 && found->back() != ' ' &&
                        std::ranges::all_of(*found, isBoundaryCharacter);
    return usable ? found : std::nullopt;
}

bool MultipartReader::consume(std::string_view bytes) {
    if (stopped_) {
        return false;
    }
    pending_ += bytes;
    while (step()) {
    }
    pending_.erase(0, at_);
    at_ = 0;
    return !stopped_;
}

bool MultipartReader::step() {
    switch (state_) {
        case State::opening:
            return stepOpening();
        case State::afterDelimiter:
            return stepAfterDelimiter();
        case State::head:
            return stepHead();
        case State::content:
            return stepContent();
        case State::done:
            return stepDone();
    }
    return false;
}

bool MultipartReader::stop(const std::string& why) {
    stopped_ = true;
    complaint_ = why;
    return false;
}

// The first delimiter has no line end before it.
bool MultipartReader::stepOpening() {
    const std::string_view expected = std::string_view(delimiter_).substr(2);
    const auto seen = std::string_view(pending_).substr(at_);
    if (!expected.starts_with(seen.substr(0, expected.size()))) {
        return stop("the body does not begin with its boundary");
    }
    if (seen.size() < expected.size()) {
        return false;
    }
    at_ += expected.size();
    state_ = State::afterDelimiter;
    return true;
}

bool MultipartReader::stepAfterDelimiter() {
    const auto seen = std::string_view(pending_).substr(at_);
    if (seen.size() < 2) {
        return false;
    }
    const auto ending = seen.substr(0, 2);
    if (ending != "\r\n" && ending != "--") {
        return stop("a boundary is followed by something else than a line end");
    }
    at_ += 2;
    state_ = ending == "--" ? State::done : State::head;
    return true;
}

bool MultipartReader::stepHead() {
    const auto seen = std::string_view(pending_).substr(at_);
    const auto end = seen.find("\r\n\r\n");
    if (std::min(end, seen.size()) > longestPartHead) {
        return stop("the header of a part is too long");
    }
    if (end == std::string_view::npos) {
        return false;
    }
    const auto head = readPartHead(seen.substr(0, end));
    if (!head) {
        return stop(head.error());
    }
    at_ += end + 4;
    state_ = State::content;
    return listener_.partBegan(*head) || stop();
}

bool MultipartReader::deliver(std::size_t count) {
    const auto bytes = std::string_view(pending_).substr(at_, count);
    at_ += count;
    return bytes.empty() || listener_.partBytes(bytes) || stop();
}

bool MultipartReader::stepContent() {
    const auto seen = std::string_view(pending_).substr(at_);
    const auto end = seen.find(delimiter_);
    if (end == std::string_view::npos) {
        // The last bytes may be the beginning of a delimiter.
        const std::size_t kept = std::min(seen.size(), delimiter_.size() - 1);
        deliver(seen.size() - kept);
        return false;
    }
    if (!deliver(end)) {
        return false;
    }
    at_ += delimiter_.size();
    state_ = State::afterDelimiter;
    return listener_.partEnded() || stop();
}

// A line end may follow the closing delimiter, in whatever pieces it arrives.
bool MultipartReader::stepDone() {
    trailing_ += std::string_view(pending_).substr(at_, 3);
    at_ = pending_.size();
    return std::string_view("\r\n").starts_with(trailing_) ? false
                                                           : stop("something follows the closing boundary");
}

}  // namespace mireth::receiver
