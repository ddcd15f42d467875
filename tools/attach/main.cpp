// mireth-attach: runs a Qt program with the generic plugin `mireth`, and is that program from then on.
#include <stdlib.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include "platforms/qt/attach/AttachSettings.hpp"

namespace {

namespace variables = mireth::qt::attach_variables;

/// What a shell answers for a program that cannot be run.
constexpr int cannotRun = 126;
constexpr int notFound = 127;

struct Options {
    std::string brand = "attached";
    std::string project = "attached";
    std::string srEndpoint;
    std::string keldaEndpoint;
    std::string info;
};

/// As far from this program in the build tree as where it is installed.
std::filesystem::path pluginDirectory() {
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    return (program.parent_path() / MIRETH_PLUGINS).lexically_normal();
}

void set(const char* variable, const std::string& value) {
    if (!value.empty()) {
        ::setenv(variable, value.c_str(), 1);
    }
}

/// In front of what is there already.
void prepend(const char* variable, const std::string& value, char separator) {
    const char* const before = ::getenv(variable);
    const bool isEmpty = before == nullptr || *before == '\0';
    ::setenv(variable, isEmpty ? value.c_str() : (value + separator + before).c_str(), 1);
}

void setEnvironment(const Options& options) {
    set(variables::brand, options.brand);
    set(variables::project, options.project);
    set(variables::srEndpoint, options.srEndpoint);
    set(variables::keldaEndpoint, options.keldaEndpoint.empty() ? options.srEndpoint : options.keldaEndpoint);
    set("MIRETHVEX_INFO", options.info);
    if (const char* const path = ::getenv("QT_PLUGIN_PATH")) {
        ::setenv(variables::pluginPath, path, 1);
    }
    prepend("QT_PLUGIN_PATH", pluginDirectory().native(), ':');
    prepend("QT_QPA_GENERIC_PLUGINS", "mireth", ',');
}

}  // namespace

int main(int argc, char** argv) {
    Options options;
    CLI::App app("Runs a Qt 6 program and records its main window.", "mireth-attach");
    app.add_option("--brand", options.brand, "Brand identifier")->capture_default_str();
    app.add_option("--project", options.project, "Project identifier")->capture_default_str();
    app.add_option("--sr-endpoint", options.srEndpoint, "Origin of the session-replay service");
    app.add_option("--kelda-endpoint", options.keldaEndpoint,
                   "Origin of the configuration service; else that of the session-replay service");
    app.add_option("--info", options.info, "Information dictionary, a JSON file");
    app.set_version_flag("--version", "mireth-attach " MIRETH_VERSION);
    app.prefix_command();
    CLI11_PARSE(app, argc, argv);

    std::vector<std::string> command = app.remaining();
    if (command.empty()) {
        std::fputs("mireth-attach: name a program to run\n", stderr);
        return 2;
    }
    setEnvironment(options);
    std::vector<char*> arguments;
    for (auto& argument : command) {
        arguments.push_back(argument.data());
    }
    arguments.push_back(nullptr);
    ::execvp(arguments.front(), arguments.data());
    const int error = errno;
    std::fprintf(stderr, "mireth-attach: %s: %s\n", arguments.front(), std::strerror(error));
    return error == ENOENT ? notFound : cannotRun;
}
