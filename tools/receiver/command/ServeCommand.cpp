// Puts the parts together: configuration, store, endpoints, server.
#include "command/ServeCommand.hpp"

#include <sys/resource.h>

#include <csignal>
#include <expected>
#include <nlohmann/json.hpp>
#include <ostream>

#include "base/JsonText.hpp"
#include "command/BindPolicy.hpp"
#include "command/Router.hpp"
#include "http/HttpServer.hpp"
#include "service/Housekeeping.hpp"
#include "service/Retention.hpp"
#include "settings/ListenAddress.hpp"
#include "sqlite/SqliteStore.hpp"
#include "video/ProgramExporter.hpp"

namespace mireth::receiver {
namespace {

int fail(const Environment& environment, const std::string& why) {
    environment.report(why);
    return 1;
}

// The host as clients write it; a wildcard address is no address to connect to.
std::string originOf(const ListenAddress& address, bool tls) {
    ListenAddress reachable = address;
    if (address.host == "0.0.0.0" || address.host == "::") {
        reachable.host = address.host == "::" ? "::1" : "127.0.0.1";
    }
    return (tls ? "https://" : "http://") + reachable.text();
}

void printReady(std::ostream& out, const ListenAddress& address, const ServeOptions& options) {
    const auto origin = originOf(address, options.tls.has_value());
    out << jsonText({{"event", "ready"},
                     {"listen", address.text()},
                     {"sr", origin},
                     {"kelda", origin},
                     {"data", options.data}})
        << std::endl;
}

void announce(std::ostream& out, const ListenAddress& address, const ServeOptions& options,
              const Environment& environment) {
    if (options.printReady) {
        printReady(out, address, options);
    } else {
        environment.report("version " MIRETH_VERSION ", listening on " +
                           originOf(address, options.tls.has_value()) + ", data in " + options.data);
    }
}

// A connection takes a descriptor or two, and what programs get without asking is too few for all of them.
void allowManyDescriptors() {
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) == 0) {
        limit.rlim_cur = limit.rlim_max;
        ::setrlimit(RLIMIT_NOFILE, &limit);
    }
}

// The operator's, with what follows from where the receiver listens; warnings are reported.
std::expected<Config, std::string> configFor(const ServeOptions& options, const ListenAddress& address,
                                             const Environment& environment) {
    auto config = options.config ? Config::read(*options.config) : Config{};
    if (!config) {
        return config;
    }
    for (const auto& warning : config->warnings) {
        environment.report("in " + *options.config + ": " + warning);
    }
    if (!config->limits.connectionsPerAddress) {
        config->limits.connectionsPerAddress = connectionsPerAddress(options, address);
    }
    return config;
}

void awaitSignal() {
    sigset_t wanted;
    sigemptyset(&wanted);
    sigaddset(&wanted, SIGTERM);
    sigaddset(&wanted, SIGINT);
    int received = 0;
    sigwait(&wanted, &received);
}

}  // namespace

int serve(const ServeOptions& options, std::ostream& out, std::ostream& errors) {
    const auto environment = Environment::real(errors);
    allowManyDescriptors();
    auto address = ListenAddress::parse(options.listen);
    if (!address) {
        return fail(environment, address.error());
    }
    // Before anything is said of who can reach it.
    if (const auto complaint = address->complaintAboutHost(); !complaint.empty()) {
        return fail(environment, "cannot listen on " + address->text() + ": " + complaint);
    }
    const auto rules = accessRulesFor(options, *address);
    if (!rules) {
        return fail(environment, rules.error());
    }
    const auto config = configFor(options, *address, environment);
    if (!config) {
        return fail(environment, config.error());
    }
    const auto store =
        SqliteStore::open(options.data, environment.newIdentifier,
                          {.most = config->limits.diskBytes, .keepFree = config->limits.freeBytes});
    if (!store) {
        return fail(environment, store.error());
    }
    if ((*store)->sweptVideos() > 0) {
        environment.report("removed " + std::to_string((*store)->sweptVideos()) +
                           " videos that an interrupted upload left behind");
    }
    const auto exporter = ProgramExporter::create("/proc/self/exe", options.data, environment.newIdentifier);
    if (!exporter) {
        return fail(environment, exporter.error());
    }
    Metrics metrics;
    const Services services{.config = *config,
                            .store = **store,
                            .environment = environment,
                            .metrics = metrics,
                            .exporter = **exporter};
    Router router(services, *rules);
    const auto server = HttpServer::start({.host = address->host, .port = address->port, .tls = options.tls},
                                          config->limits, router, environment);
    if (!server) {
        return fail(environment, server.error());
    }
    Retention retention(services);
    const Housekeeping housekeeping([&] { retention.enforce(); }, std::chrono::minutes(1));
    address->port = (*server)->port();
    announce(out, *address, options, environment);
    awaitSignal();
    (*exporter)->end();
    (*server)->stop();
    return 0;
}

}  // namespace mireth::receiver
