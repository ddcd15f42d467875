// A program that a test runs: its output, its exit status, and an end to a test whose program hangs.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace mireth::endtoend {

/// Longer than anything here takes, sanitizers included.
inline constexpr std::chrono::seconds ampleTime{120};

struct Ended {
    /// The exit status; minus the signal's number when a signal ended it.
    int status = 0;
    /// It was still running when patience ended, and was killed.
    bool gaveUp = false;
    std::string out = {};
    std::string errors = {};
};

/// A running program, killed with the object if it has not ended by then.
class Process {
  public:
    /// The program, looked up as a shell would, and its arguments. Throws when it cannot be started.
    explicit Process(std::vector<std::string> command);
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;
    ~Process();

    /// The next line of standard output, without its end. Nothing when there is none to come.
    std::optional<std::string> readLine(std::chrono::seconds patience = ampleTime);
    /// Asks it to end.
    void terminate() const;
    /// Waits for the end. What `readLine` handed out is part of the output.
    Ended wait(std::chrono::seconds patience = ampleTime);

  private:
    using Deadline = std::chrono::steady_clock::time_point;

    struct Stream {
        int fd = -1;
        std::string text;
    };

    bool readSome(Deadline deadline);
    static void readFrom(Stream& stream);

    pid_t process_ = -1;
    Stream out_;
    Stream errors_;
    std::size_t handedOut_ = 0;  ///< of out_.text
};

/// Starts, waits, tells.
Ended runProcess(std::vector<std::string> command, std::chrono::seconds patience = ampleTime);

}  // namespace mireth::endtoend
