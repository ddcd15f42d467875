// mireth-receiver as a program of its own, and what it says came in.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "endtoend/support/Process.hpp"

namespace mireth::endtoend {

using Json = nlohmann::json;

/// Runs on a free port as long as the object lives. Its end is part of the test: anything but an orderly one
/// fails.
class Receiver {
  public:
    /// `data` is its directory; `more` are further arguments.
    explicit Receiver(std::string data, std::vector<std::string> more = {});
    Receiver(const Receiver&) = delete;
    Receiver& operator=(const Receiver&) = delete;
    ~Receiver();

    /// Such as "http://127.0.0.1:43211".
    const std::string& origin() const { return origin_; }
    /// The same under another host name.
    std::string originAt(const std::string& host) const;

    /// By start. While it runs, too.
    std::vector<Json> sessions() const;
    /// What `show` prints of a session.
    Json show(const std::string& sessionId) const;
    /// Writes the video of a whole session.
    void exportVideo(const std::string& sessionId, const std::string& file) const;
    /// Log lines that belong to no session.
    Json looseLogLines() const;

  private:
    Json report(std::vector<std::string> arguments) const;

    const std::string data_;
    Process process_;
    std::string origin_;
};

}  // namespace mireth::endtoend
