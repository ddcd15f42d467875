// Parses with CLI11 and runs serve, list or show.
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
#include "reports/SessionReports.hpp"
#include "sqlite/SqliteStore.hpp"

namespace mireth::receiver {
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
    std::string session;
    bool json = false;
    app.add_option("--listen", serving.listen, "Address and port; port 0 picks a free one")
        ->capture_default_str();
    auto* const certificate =
        app.add_option("--tls-cert", tls.certificate, "Certificate chain (PEM): serve https");
    auto* const key = app.add_option("--tls-key", tls.key, "The certificate's private key (PEM)");
    certificate->needs(key);
    key->needs(certificate);
    app.add_flag("--behind-proxy", serving.behindProxy,
                 "A proxy in front does TLS and lets strangers in; tokens are required");
    app.add_option("--upload-token-file", serving.uploadTokenFile,
                   "File with the token for uploads; clients' base URLs end in /t/TOKEN");
    app.add_option("--viewing-token-file", serving.viewingTokenFile,
                   "File with the token that viewers log in with");
    app.add_option("--host", serving.hosts,
                   "Name by which viewers call the receiver; may be given several times");
    app.add_option("--data", serving.data, "Directory for the database and the videos")
        ->capture_default_str();
    app.add_option("--config", serving.config, "Projects and limits (JSON)");
    app.add_flag("--print-ready", serving.printReady,
                 "Print one JSON line with the addresses once accepting");
    auto* const listing = app.add_subcommand("list", "Print the sessions that came in");
    auto* const showing =
        app.add_subcommand("show", "Print one session: chunks, events, timeline, log lines");
    showing->add_option("SESSION", session, "The session's id")->required();
    auto* const exporting = app.add_subcommand("export", "Write the video of one session as one MP4 file");
    ExportOptions exported;
    exporting->add_option("SESSION", exported.session, "The session's id")->required();
    exporting->add_option("--output", exported.output, "The file to write")->required();
    exporting->add_option("--data", serving.data, "Directory of the receiver")->capture_default_str();
    for (auto* const command : {listing, showing}) {
        command->add_option("--data", serving.data, "Directory of the receiver")->capture_default_str();
        command->add_flag("--json", json, "Print everything as JSON");
    }
    app.require_subcommand(0, 1);
    app.set_version_flag("--version", "mireth-receiver " MIRETH_VERSION);
    try {
        app.parse(argc, argv);
    } catch (const CLI::Success& asked) {
        return app.exit(asked, out, errors);
    } catch (const CLI::ParseError& error) {
        return fail(errors, error.what());
    }
    // Printed paths are of use from any directory.
    serving.data = std::filesystem::absolute(serving.data).lexically_normal();
    if (listing->parsed()) {
        return list(serving.data, json, out, errors);
    }
    if (showing->parsed()) {
        return show(serving.data, session, json, out, errors);
    }
    if (exporting->parsed()) {
        exported.data = serving.data;
        return exportVideo(exported, errors);
    }
    if (certificate->count() > 0) {
        serving.tls = tls;
    }
    return serve(serving, out, errors);
}

}  // namespace mireth::receiver
