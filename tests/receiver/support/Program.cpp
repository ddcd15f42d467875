// posix_spawn with pipes for both outputs.
#include "support/Program.hpp"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <fstream>
#include <stdexcept>

extern char** environ;

namespace mireth::receiver::test {
namespace {

std::string readAll(int fd) {
    std::string text;
    std::array<char, 4096> buffer{};
    for (ssize_t got = 0; (got = ::read(fd, buffer.data(), buffer.size())) > 0;) {
        text.append(buffer.data(), static_cast<std::size_t>(got));
    }
    return text;
}

}  // namespace

Program::Program(std::vector<std::string> arguments) {
    std::array<int, 2> out{};
    std::array<int, 2> errors{};
    if (::pipe2(out.data(), O_CLOEXEC) != 0 || ::pipe2(errors.data(), O_CLOEXEC) != 0) {
        throw std::runtime_error("no pipe");
    }
    std::vector<char*> pointers;
    for (auto& argument : arguments) {
        pointers.push_back(argument.data());
    }
    pointers.push_back(nullptr);
    // What it complains of is read at its end.
    ::fcntl(errors[0], F_SETPIPE_SZ, 1 << 20);
    posix_spawn_file_actions_t actions{};
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, errors[1], STDERR_FILENO);
    const int failed = ::posix_spawnp(&process_, pointers[0], &actions, nullptr, pointers.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    ::close(out[1]);
    ::close(errors[1]);
    out_ = out[0];
    errors_ = errors[0];
    if (failed != 0) {
        throw std::runtime_error("cannot start " + arguments[0]);
    }
}

Program::~Program() {
    if (process_ > 0) {
        ::kill(process_, SIGKILL);
        ::waitpid(process_, nullptr, 0);
    }
    ::close(out_);
    ::close(errors_);
}

std::string Program::readLine() {
    std::string line;
    char c = 0;
    while (::read(out_, &c, 1) == 1 && c != '\n') {
        line += c;
    }
    read_ += line + '\n';
    return line;
}

void Program::signal(int number) const {
    ::kill(process_, number);
}

std::uint64_t Program::peakMemory() const {
    std::ifstream status("/proc/" + std::to_string(process_) + "/status");
    for (std::string word; status >> word;) {
        std::uint64_t kibibytes = 0;
        if (word == "VmHWM:" && status >> kibibytes) {
            return kibibytes * 1024;
        }
    }
    throw std::runtime_error("the program has ended");
}

ProgramResult Program::wait() {
    ProgramResult result{.status = -1, .out = read_ + readAll(out_), .errors = readAll(errors_)};
    int status = 0;
    ::waitpid(process_, &status, 0);
    process_ = -1;
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return result;
}

ProgramResult runProgram(std::vector<std::string> arguments) {
    return Program(std::move(arguments)).wait();
}

std::vector<std::string> receiverCommand(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), MIRETH_RECEIVER_PROGRAM);
    return arguments;
}

}  // namespace mireth::receiver::test
