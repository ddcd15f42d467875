#include "attach/Options.hpp"

#include <CLI/CLI.hpp>
#include <sstream>
#include <system_error>
#include <utility>

#include "commandline/Complaint.hpp"
#include "platforms/linux/system/JsonFileInformationDictionary.hpp"

namespace mireth::attach {

namespace {

/// What programs answer for a command line that they cannot use.
constexpr int unusable = 2;

EarlyEnd complaint(const std::string& line) {
    return {"mireth-attach: " + line + "\n", unusable};
}

void declareOptions(CLI::App& app, Options& options) {
    const auto declare = [&app](const char* name, auto& into, const char* type, const char* text) {
        return app.add_option(name, into, text)->type_name(type)->check(commandline::notEmpty());
    };
    declare("--brand", options.brand, "ID", "Brand identifier")->capture_default_str();
    declare("--project", options.project, "ID", "Project identifier")->capture_default_str();
    declare("--sr-endpoint", options.srEndpoint, "URL", "Base URL of the session-replay service");
    declare("--kelda-endpoint", options.keldaEndpoint, "URL",
            "Base URL of the configuration service; else that of the session-replay service");
    declare("--info", options.information, "FILE", "Information dictionary (JSON)");
    app.set_version_flag("--version", "mireth-attach " MIRETH_VERSION);
    app.prefix_command();
    // Stands in the line of usage only.
    app.get_formatter()->label("OPTIONS", "OPTIONS] PROGRAM [ARGUMENTS");
}

std::filesystem::path informationFile(const std::filesystem::path& given) {
    const auto file = given.empty() ? platform::namedInformationFile().value_or("") : given;
    std::error_code error;
    const auto absolute = file.empty() ? file : std::filesystem::absolute(file, error);
    return error ? file : absolute;
}

}  // namespace

std::variant<Options, EarlyEnd> readOptions(int count, const char* const* arguments) {
    Options options;
    CLI::App app("Runs a Qt 6 program and records its main window.", "mireth-attach");
    declareOptions(app, options);
    try {
        app.parse(count, arguments);
    } catch (const CLI::Success& asked) {
        std::ostringstream text;
        const int status = app.exit(asked, text, text);
        return EarlyEnd{text.str(), status};
    } catch (const CLI::ParseError& error) {
        return complaint(commandline::complaintOf(app, error));
    }
    options.command = app.remaining();
    if (!options.command.empty() && options.command.front() == "--") {
        options.command.erase(options.command.begin());
    }
    if (options.command.empty()) {
        return complaint("name a program to run");
    }
    if (options.command.front().starts_with('-')) {
        return complaint("The following argument was not expected: " + options.command.front());
    }
    options.information = informationFile(options.information);
    return options;
}

}  // namespace mireth::attach
