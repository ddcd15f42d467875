// mireth-attach: runs a Qt program with the generic plugin `mireth`, and is that program from then on.
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "attach/Environment.hpp"
#include "attach/InformationWarnings.hpp"
#include "attach/Options.hpp"

namespace {

/// What a shell answers for a program that cannot be run.
constexpr int cannotRun = 126;
constexpr int notFound = 127;

void warn(const std::string& line) {
    std::fprintf(stderr, "mireth-attach: %s\n", line.c_str());
}

/// Does not return when the program can be run.
int runProgram(std::vector<std::string> command) {
    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (auto& argument : command) {
        arguments.push_back(argument.data());
    }
    arguments.push_back(nullptr);
    ::execvp(arguments.front(), arguments.data());
    const int error = errno;
    warn(command.front() + ": " + std::strerror(error));
    return error == ENOENT ? notFound : cannotRun;
}

}  // namespace

int main(int count, char** arguments) {
    using namespace mireth::attach;
    const auto read = readOptions(count, arguments);
    if (const auto* early = std::get_if<EarlyEnd>(&read)) {
        std::fputs(early->text.c_str(), early->status == 0 ? stdout : stderr);
        return early->status;
    }
    const auto& options = std::get<Options>(read);
    for (const auto& line : informationWarnings(options)) {
        warn(line);
    }
    setEnvironment(options);
    return runProgram(options.command);
}
