// The command line of mireth-attach.
#pragma once

#include <filesystem>
#include <string>
#include <variant>
#include <vector>

namespace mireth::attach {

struct Options {
    std::string brand = "attached";
    std::string project = "attached";
    /// Empty: the information file's.
    std::string srEndpoint;
    std::string keldaEndpoint;
    /// The information file, an absolute path; empty when there is none.
    std::filesystem::path information;
    /// The program and its arguments; not empty.
    std::vector<std::string> command;
};

/// What to print instead of running, and the status to end with: help, or a complaint of one line.
struct EarlyEnd {
    std::string text;
    int status = 0;
};

/// Looks at the environment, too, for the information file.
std::variant<Options, EarlyEnd> readOptions(int count, const char* const* arguments);

}  // namespace mireth::attach
