// mireth-receiver: takes in what recording clients send. Everything it does is in the library beside it.
#include <csignal>
#include <exception>
#include <iostream>

#include "command/CommandLine.hpp"

int main(int argc, char** argv) {
    // Blocked before any thread begins, so that only the one that waits for them gets them.
    sigset_t ending;
    sigemptyset(&ending);
    sigaddset(&ending, SIGTERM);
    sigaddset(&ending, SIGINT);
    pthread_sigmask(SIG_BLOCK, &ending, nullptr);
    std::signal(SIGPIPE, SIG_IGN);
    try {
        return mireth::receiver::runCommandLine(argc, argv, std::cout, std::cerr);
    } catch (const std::exception& error) {
        std::cerr << "mireth-receiver: " << error.what() << '\n';
        return 1;
    }
}
