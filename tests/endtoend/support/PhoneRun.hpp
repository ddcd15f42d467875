// One run of mireth-phone, and its output as a test asks about it.
#pragma once

#include <string>
#include <vector>

#include "endtoend/support/Receiver.hpp"

namespace mireth::endtoend {

struct PhoneRun {
    Ended ended;
    /// Standard output, line by line.
    std::vector<Json> lines;

    /// What each result line says, as "startRecording success".
    std::vector<std::string> results() const;
    /// The log lines at error level, without the details in brackets. Those about posts of log lines are left
    /// out: which lines are posted is drawn by lot, and only a receiver with a certificate can take them.
    std::vector<std::string> errors() const;
    /// The log lines whose text begins so, whole.
    std::vector<std::string> logged(const std::string& beginning) const;
    /// The first result line of this call; null when there is none.
    Json resultOf(const std::string& call) const;
    /// Of each session that was started.
    std::vector<std::string> sessionIds() const;
    /// The last line.
    Json end() const;
};

/// Runs the phone; fails the test when it does not end by itself.
PhoneRun runPhone(std::vector<std::string> arguments);

/// Made by the receiver, and so different in every run: replaces each with its name.
std::string withoutSessions(const PhoneRun& run);

}  // namespace mireth::endtoend
