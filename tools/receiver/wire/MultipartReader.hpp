// Takes a multipart/form-data body apart while it arrives (RFC 7578), holding no more than one part's header
// and a delimiter's length in memory. Used for chunk uploads.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace mireth::receiver {

struct PartHead {
    std::string name;
    std::optional<std::string> filename;
    std::optional<std::string> contentType;
};

/// Receives the parts in their order, on the thread that feeds the reader. Returning false ends the reading.
class PartListener {
  public:
    PartListener() = default;
    PartListener(const PartListener&) = delete;
    PartListener& operator=(const PartListener&) = delete;
    virtual ~PartListener() = default;

    virtual bool partBegan(const PartHead& head) = 0;
    virtual bool partBytes(std::string_view bytes) = 0;
    virtual bool partEnded() = 0;
};

/// One body's reader; one thread at a time.
class MultipartReader {
  public:
    /// `listener` must outlive the reader.
    MultipartReader(const std::string& boundary, PartListener& listener);

    /// The boundary that a Content-Type header names; none when the header is not multipart/form-data with a
    /// boundary of 1 to 70 characters as RFC 2046 allows them.
    static std::optional<std::string> boundaryOf(std::string_view contentType);

    /// Reads on. False when the body is malformed or the listener ended the reading; nothing may follow then.
    bool consume(std::string_view bytes);
    /// True when the closing delimiter has been read.
    bool complete() const { return state_ == State::done; }
    /// What is malformed; empty when nothing is.
    const std::string& complaint() const { return complaint_; }

  private:
    enum class State { opening, afterDelimiter, head, content, done };

    /// Takes one step; false when more bytes are needed or reading ended.
    bool step();
    bool stepOpening();
    bool stepAfterDelimiter();
    bool stepHead();
    bool stepContent();
    bool stepDone();
    bool stop(const std::string& why = {});
    bool deliver(std::size_t count);

    const std::string delimiter_;  ///< "\r\n--" and the boundary
    PartListener& listener_;
    State state_ = State::opening;
    std::string pending_;
    std::size_t at_ = 0;    ///< what of pending_ has been used up
    std::string trailing_;  ///< what followed the closing delimiter
    bool stopped_ = false;
    std::string complaint_;
};

}  // namespace mireth::receiver
