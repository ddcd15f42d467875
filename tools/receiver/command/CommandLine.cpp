// Parses with CLI11 and runs serve, list, show or export.
#include "command/CommandLine.hpp"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <ostream>
#include <string_view>

#include "base/PrintableText.hpp"
#include "command/ExportCommand.hpp"
#include "command/ServeCommand.hpp"
#include "commandline/Complaint.hpp"
#include "reports/SessionReports.hpp"
#include "settings/HostName.hpp"
#include "sqlite/SqliteStore.hpp"

namespace mireth::receiver {

using commandline::notEmpty;

namespace {

int fail(std::ostream& errors, const std::string& why) {
    errors << "mireth-receiver: " << printableText(why) << '\n';
    return 1;
}

// The earliest started first.
Stored<std::vector<SessionSummary>> allSessions(Store& store) {
    std::vector<SessionSummary> all;
    SessionQuery query{.limit = 1000};
    do {
        auto page = store.list(query);
        if (!page) {
            return std::unexpected(page.error());
        }
        std::ranges::move(page->sessions, std::back_inserter(all));
        query.before = page->next;
    } while (query.before);
    std::ranges::reverse(all);
    return all;
}

int list(const std::string& data, bool json, std::ostream& out, std::ostream& errors) {
    const auto store = SqliteStore::openForReading(data);
    if (!store) {
        return fail(errors, store.error());
    }
    auto sessions = allSessions(**store);
    auto lines = (*store)->strayLogLines();
    if (!sessions || !lines) {
        return fail(errors, !sessions ? sessions.error() : lines.error());
    }
    const Inventory inventory{.sessions = std::move(*sessions), .strayLogLines = std::move(*lines)};
    (json ? writeListJson : writeListText)(out, inventory);
    return 0;
}

int show(const std::string& data, const std::string& session, bool json, std::ostream& out,
         std::ostream& errors) {
    const auto store = SqliteStore::openForReading(data);
    if (!store) {
        return fail(errors, store.error());
    }
    const auto contents = (*store)->contents(session);
    if (!contents) {
        return fail(errors, contents.error());
    }
    if (!*contents) {
        return fail(errors, "there is no session \"" + session + "\" in " + data);
    }
    (json ? writeShowJson : writeShowText)(out, **contents,
                                           [&](const std::string& key) { return (*store)->videoPath(key); });
    return 0;
}

CLI::Validator hostName() {
    return {[](const std::string& text) {
                return isHostName(text) ? std::string()
                                        : commandline::inQuotes(text) +
                                              " is no name of a host; write it without scheme or port, such "
                                              "as replay.example.org";
            },
            ""};
}

void addServeOptions(CLI::App& app, ServeOptions& serving, TlsFiles& tls) {
    const auto file = [&app](const std::string& name, auto& into, const std::string& text) {
        return app.add_option(name, into, text)->type_name("FILE")->check(notEmpty());
    };
    app.add_option("--listen", serving.listen, "Where to listen, [IPV6]:PORT too; port 0 picks a free one")
        ->type_name("HOST:PORT")
        ->capture_default_str();
    auto* const certificate = file("--tls-cert", tls.certificate, "Certificate chain (PEM): serve https");
    auto* const key = file("--tls-key", tls.key, "The certificate's private key (PEM)");
    certificate->needs(key);
    key->needs(certificate);
    app.add_flag("--behind-proxy", serving.behindProxy,
                 "A proxy in front does TLS and lets strangers in; tokens are required")
        ->disable_flag_override();
    file("--upload-token-file", serving.uploadTokenFile,
         "File with the token for uploads; clients' base URLs end in /t/TOKEN");
    file("--viewing-token-file", serving.viewingTokenFile, "File with the token that viewers log in with");
    app.add_option("--host", serving.hosts,
                   "Name by which viewers call the receiver; may be given several times")
        ->type_name("NAME")
        ->check(hostName());
    app.add_option("--data", serving.data, "Directory for the database and the videos")
        ->type_name("DIR")
        ->check(notEmpty())
        ->capture_default_str();
    file("--config", serving.config, "Projects and limits (JSON)");
    app.add_flag("--print-ready", serving.printReady, "Print one JSON line with the addresses once accepting")
        ->disable_flag_override();
}

struct Reading {
    std::string session;
    bool json = false;
};

struct Commands {
    CLI::App* list;
    CLI::App* show;
    CLI::App* exporting;
};

Commands addCommands(CLI::App& app, std::string& data, Reading& reading, ExportOptions& exported) {
    const Commands commands{
        .list = app.add_subcommand("list", "Print the sessions that came in"),
        .show = app.add_subcommand("show", "Print one session: chunks, events, timeline, log lines"),
        .exporting = app.add_subcommand("export", "Write the video of one session as one MP4 file")};
    commands.show->add_option("SESSION", reading.session, "The session's id")->required()->type_name("ID");
    commands.exporting->add_option("SESSION", exported.session, "The session's id")
        ->required()
        ->type_name("ID");
    commands.exporting->add_option("--output", exported.output, "The file to write")
        ->required()
        ->type_name("FILE")
        ->check(notEmpty());
    commands.exporting->add_flag("--force", exported.replace, "Replace the file when it is there already")
        ->disable_flag_override();
    for (auto* const command : {commands.list, commands.show}) {
        command->add_flag("--json", reading.json, "Print everything as JSON")->disable_flag_override();
    }
    for (auto* const command : {commands.list, commands.show, commands.exporting}) {
        command->add_option("--data", data, "Directory of the receiver")
            ->type_name("DIR")
            ->check(notEmpty())
            ->capture_default_str();
    }
    app.footer(
        "mireth-receiver list [--data DIR] [--json]\n"
        "mireth-receiver show SESSION [--data DIR] [--json]\n"
        "mireth-receiver export SESSION --output FILE [--force] [--data DIR]");
    return commands;
}

/// What belongs to serving has no meaning for a command.
void requireNoServingOptions(const CLI::App& app) {
    const auto commands = app.get_subcommands();
    for (const auto* const option : app.get_options()) {
        if (!commands.empty() && option->count() > 0 && option->get_name() != "--data") {
            throw CLI::ValidationError(option->get_name(),
                                       "does not go with " + commands.front()->get_name());
        }
    }
}

}  // namespace

std::string defaultDataDirectory() {
    const char* const data = std::getenv("XDG_DATA_HOME");
    if (data != nullptr && std::string_view(data).starts_with('/')) {
        return std::string(data) + "/mireth-receiver";
    }
    const char* const home = std::getenv("HOME");
    return std::string(home == nullptr ? "." : home) + "/.local/share/mireth-receiver";
}

int runCommandLine(int argc, const char* const* argv, std::ostream& out, std::ostream& errors) {
    CLI::App app(
        "Takes in recorded sessions: creates them, stores their chunks, events and log lines.\n"
        "Serves until SIGTERM or SIGINT.",
        "mireth-receiver");
    ServeOptions serving;
    serving.data = defaultDataDirectory();
    TlsFiles tls;
    addServeOptions(app, serving, tls);
    Reading reading;
    ExportOptions exported;
    const auto commands = addCommands(app, serving.data, reading, exported);
    app.require_subcommand(0, 1);
    app.set_version_flag("--version", "mireth-receiver " MIRETH_VERSION);
    try {
        app.parse(argc, argv);
        requireNoServingOptions(app);
    } catch (const CLI::Success& asked) {
        if (const auto complaint = commandline::complaintOfStrangers(app); !complaint.empty()) {
            return fail(errors, complaint);
        }
        return app.exit(asked, out, errors);
    } catch (const CLI::ParseError& error) {
        return fail(errors, commandline::complaintOf(app, error));
    }
    // Printed paths are of use from any directory.
    serving.data = std::filesystem::absolute(serving.data).lexically_normal();
    if (commands.list->parsed()) {
        return list(serving.data, reading.json, out, errors);
    }
    if (commands.show->parsed()) {
        return show(serving.data, reading.session, reading.json, out, errors);
    }
    if (commands.exporting->parsed()) {
        exported.data = serving.data;
        return exportVideo(exported, errors);
    }
    if (!tls.certificate.empty()) {
        serving.tls = tls;
    }
    return serve(serving, out, errors);
}

}  // namespace mireth::receiver
