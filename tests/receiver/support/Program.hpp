// Runs the mireth-receiver program itself. Used by the tests of its command line, signals and exit status.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <vector>

namespace mireth::receiver::test {

struct ProgramResult {
    int status = -1;  ///< exit status; -1 when a signal ended it
    std::string out;
    std::string errors;
};

/// A running program, killed with the object if it has not ended by then.
class Program {
  public:
    /// The program's path and its arguments.
    explicit Program(std::vector<std::string> arguments);
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;
    ~Program();

    /// The next line of standard output, without its end.
    std::string readLine();
    void signal(int number) const;
    /// The most memory it ever had, in bytes.
    std::uint64_t peakMemory() const;
    /// Waits for the end.
    ProgramResult wait();

  private:
    pid_t process_ = -1;
    int out_ = -1;
    int errors_ = -1;
    std::string read_;  ///< of standard output, lines already handed out included
};

/// Starts, waits, tells.
ProgramResult runProgram(std::vector<std::string> arguments);
/// mireth-receiver with these arguments.
std::vector<std::string> receiverCommand(std::vector<std::string> arguments);

}  // namespace mireth::receiver::test
