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
#include <utility>
#include <vector>

#include "commandline/Complaint.hpp"
#include "platforms/linux/InformationCheck.hpp"
#include "platforms/linux/network/EndpointCheck.hpp"
#include "platforms/qt/attach/AttachSettings.hpp"

namespace {

namespace variables = mireth::qt::attach_variables;

/// What programs answer for a command line that they cannot use.
constexpr int unusable = 2;
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

/// In front of what is there already, which is saved.
void prepend(const char* variable, const std::string& value, char separator, const char* saveAs) {
    const char* const before = ::getenv(variable);
    if (before != nullptr) {
        ::setenv(saveAs, before, 1);
    }
    const bool isEmpty = before == nullptr || *before == '\0';
    ::setenv(variable, isEmpty ? value.c_str() : (value + separator + before).c_str(), 1);
}

void setEnvironment(const Options& options) {
    set(variables::brand, options.brand);
    set(variables::project, options.project);
    set(variables::srEndpoint, options.srEndpoint);
    set(variables::keldaEndpoint, options.keldaEndpoint.empty() ? options.srEndpoint : options.keldaEndpoint);
    set(variables::information, options.info);
    prepend("QT_PLUGIN_PATH", pluginDirectory().native(), ':', variables::pluginPath);
    prepend("QT_QPA_GENERIC_PLUGINS", "mireth", ',', variables::genericPlugins);
}

void warn(const std::string& line) {
    std::fprintf(stderr, "mireth-attach: %s\n", line.c_str());
}

/// What the plugin will read.
mireth::platform::JsonFileInformationDictionary readInformation(const Options& options) {
    using mireth::platform::JsonFileInformationDictionary;
    const char* const named = ::getenv("MIRETHVEX_INFO");
    const std::string file = options.info.empty() && named != nullptr ? named : options.info;
    return file.empty() ? JsonFileInformationDictionary(mireth::platform::TextMap())
                        : JsonFileInformationDictionary(std::filesystem::path(file));
}

/// The program runs all the same: it is not there to be recorded.
void warnOfInformation(const Options& options) {
    using namespace mireth::platform;
    const auto information = readInformation(options);
    if (!information.error().empty()) {
        warn(information.error());
    }
    for (const auto& line : warningsAbout(information, false)) {
        warn(line);
    }
    const bool insecure = information.string(information_keys::allowInsecureHttp) == "true";
    const std::pair<const char*, std::string> endpoints[] = {{"--sr-endpoint", options.srEndpoint},
                                                             {"--kelda-endpoint", options.keldaEndpoint}};
    for (const auto& [option, url] : endpoints) {
        const auto why = url.empty() ? std::string() : complaintAboutEndpoint(url, insecure);
        if (!why.empty()) {
            warn(option + (": " + why));
        }
    }
}

void declareOptions(CLI::App& app, Options& options) {
    const auto declare = [&app](const char* name, std::string& into, const char* type, const char* text) {
        return app.add_option(name, into, text)->type_name(type)->check(mireth::commandline::notEmpty());
    };
    declare("--brand", options.brand, "ID", "Brand identifier")->capture_default_str();
    declare("--project", options.project, "ID", "Project identifier")->capture_default_str();
    declare("--sr-endpoint", options.srEndpoint, "URL", "Base URL of the session-replay service");
    declare("--kelda-endpoint", options.keldaEndpoint, "URL",
            "Base URL of the configuration service; else that of the session-replay service");
    declare("--info", options.info, "FILE", "Information dictionary (JSON)");
    app.set_version_flag("--version", "mireth-attach " MIRETH_VERSION);
    app.prefix_command();
    // Stands in the line of usage only.
    app.get_formatter()->label("OPTIONS", "OPTIONS] PROGRAM [ARGUMENTS");
}

/// Does not return when the program can be run.
int runProgram(std::vector<std::string> command) {
    std::vector<char*> arguments;
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

int main(int argc, char** argv) {
    Options options;
    CLI::App app("Runs a Qt 6 program and records its main window.", "mireth-attach");
    declareOptions(app, options);
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& asked) {
        return app.exit(asked);
    } catch (const CLI::ParseError& error) {
        warn(mireth::commandline::complaintOf(app, error));
        return unusable;
    }
    auto command = app.remaining();
    if (!command.empty() && command.front() == "--") {
        command.erase(command.begin());
    }
    if (command.empty() || command.front().starts_with('-')) {
        warn(command.empty() ? "name a program to run"
                             : "The following argument was not expected: " + command.front());
        return unusable;
    }
    warnOfInformation(options);
    setEnvironment(options);
    return runProgram(command);
}
