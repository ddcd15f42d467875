// posix_spawn, with a pipe for each output read together: neither can fill up while the other is awaited.
#include "endtoend/support/Process.hpp"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>
#include <utility>

extern char** environ;

namespace mireth::endtoend {

namespace {

std::array<int, 2> makePipe() {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw std::system_error(errno, std::generic_category(), "pipe");
    }
    return ends;
}

}  // namespace

Process::Process(std::vector<std::string> command) {
    const auto out = makePipe();
    const auto errors = makePipe();
    out_.fd = out[0];
    errors_.fd = errors[0];
    std::vector<char*> arguments;
    for (auto& argument : command) {
        arguments.push_back(argument.data());
    }
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions{};
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    ::posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
    ::posix_spawn_file_actions_adddup2(&actions, errors[1], STDERR_FILENO);
    const int failure = ::posix_spawnp(&process_, arguments[0], &actions, nullptr, arguments.data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    ::close(out[1]);
    ::close(errors[1]);
    if (failure != 0) {
        process_ = -1;
        throw std::system_error(failure, std::generic_category(), command[0]);
    }
}

Process::~Process() {
    if (process_ > 0) {
        ::kill(process_, SIGKILL);
        ::waitpid(process_, nullptr, 0);
    }
    for (const int fd : {out_.fd, errors_.fd}) {
        if (fd >= 0) {
            ::close(fd);
        }
    }
}

std::optional<std::string> Process::readLine(std::chrono::seconds patience) {
    const Deadline deadline = std::chrono::steady_clock::now() + patience;
    while (true) {
        const std::size_t end = out_.text.find('\n', handedOut_);
        if (end != std::string::npos) {
            const std::size_t begin = std::exchange(handedOut_, end + 1);
            return out_.text.substr(begin, end - begin);
        }
        if (!readSome(deadline)) {
            return std::nullopt;
        }
    }
}

void Process::terminate() const {
    ::kill(process_, SIGTERM);
}

Ended Process::wait(std::chrono::seconds patience) {
    const Deadline deadline = std::chrono::steady_clock::now() + patience;
    while (readSome(deadline)) {
    }
    Ended ended{.gaveUp = out_.fd >= 0 || errors_.fd >= 0};
    if (ended.gaveUp) {
        ::kill(process_, SIGKILL);
    }
    int status = 0;
    ::waitpid(std::exchange(process_, -1), &status, 0);
    ended.status = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    ended.out = std::move(out_.text);
    ended.errors = std::move(errors_.text);
    return ended;
}

/// Waits for output of either kind. False at the deadline, and once both have ended.
bool Process::readSome(Deadline deadline) {
    std::array<pollfd, 2> states{{{.fd = out_.fd, .events = POLLIN, .revents = 0},
                                  {.fd = errors_.fd, .events = POLLIN, .revents = 0}}};
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
    if ((out_.fd < 0 && errors_.fd < 0) || left.count() <= 0) {
        return false;
    }
    if (::poll(states.data(), states.size(), static_cast<int>(left.count())) <= 0) {
        return errno == EINTR;
    }
    if (states[0].revents != 0) {
        readFrom(out_);
    }
    if (states[1].revents != 0) {
        readFrom(errors_);
    }
    return true;
}

void Process::readFrom(Stream& stream) {
    std::array<char, 16 * 1024> buffer{};
    const ssize_t got = ::read(stream.fd, buffer.data(), buffer.size());
    if (got > 0) {
        stream.text.append(buffer.data(), static_cast<std::size_t>(got));
    } else {
        ::close(std::exchange(stream.fd, -1));
    }
}

Ended runProcess(std::vector<std::string> command, std::chrono::seconds patience) {
    return Process(std::move(command)).wait(patience);
}

}  // namespace mireth::endtoend
