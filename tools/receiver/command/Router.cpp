// Routing by the path's first segment; whatever is not the viewing side's is an upload.
#include "command/Router.hpp"

#include <algorithm>
#include <array>

#include "access/UploadAuthorization.hpp"
#include "exchange/Answers.hpp"
#include "exchange/ErrorAnswer.hpp"
#include "exchange/RequestTarget.hpp"
#include "service/MeasuredExchange.hpp"
#include "viewing/WebPages.hpp"

namespace mireth::receiver {
namespace {

bool isUpload(const RequestTarget& target) {
    constexpr std::array<std::string_view, 4> first{"mobile-sr-ingestion", "app-insights", "WRTarrowEngine",
                                                    "t"};
    return std::ranges::find(first, std::string_view(target.segments.front())) != first.end();
}

bool isOnly(const RequestTarget& target, std::string_view name) {
    return target.segments.size() == 1 && target.segments.front() == name;
}

}  // namespace

std::unique_ptr<Exchange> Router::begin(const RequestHead& head) {
    auto [endpoint, exchange] = route(head);
    return std::make_unique<MeasuredExchange>(std::move(exchange), endpoint, services_.metrics,
                                              services_.environment.steadyNow);
}

Route Router::route(const RequestHead& head) {
    const auto target = parseTarget(head.target);
    if (!target) {
        return fixedRoute("other", errorAnswer(400, "the address cannot be read"));
    }
    if (isUpload(*target)) {
        return routeUpload(head, *target);
    }
    // Watched by programs that call the receiver by whatever name they have; it tells nothing of anybody.
    if (isOnly(*target, "healthz")) {
        return fixedRoute("health", health());
    }
    if (auto refusal = viewerAuthorization_.refuseForeign(head)) {
        return fixedRoute("other", std::move(*refusal));
    }
    return routeViewing(head, *target);
}

Route Router::routeUpload(const RequestHead& head, const RequestTarget& target) {
    const auto inner = authorizeUpload(target, rules_);
    if (!inner) {
        // The address is not told: it may hold a token that was mistyped, or that of another receiver.
        services_.environment.report("an upload was refused: its address lacks /t/ and the upload token");
        return fixedRoute("other", statusAnswer("ERROR", 403));
    }
    return endpoints_.begin(head, *inner);
}

Route Router::routeViewing(const RequestHead& head, const RequestTarget& target) {
    if (isOnly(target, "login")) {
        return routeLogin(head);
    }
    if (isOnly(target, "logout")) {
        return routeLogout(head);
    }
    if (target.segments.size() == 2 && target.segments[0] == "api" && target.segments[1] == "viewer") {
        return fixedRoute("login", viewerAuthorization_.describe(head));
    }
    const bool isMetrics = isOnly(target, "metrics");
    if (isMetrics || target.segments.front() == "api") {
        if (auto refusal = viewerAuthorization_.refuseStranger(head)) {
            return fixedRoute("login", std::move(*refusal));
        }
        return isMetrics ? fixedRoute("metrics", metrics()) : api_.begin(head, target);
    }
    if (isWebPage(target)) {
        return fixedRoute("page", webPage(head, target));
    }
    return fixedRoute("other", errorAnswer(404, "there is nothing at this address"));
}

Route Router::routeLogin(const RequestHead& head) {
    if (head.method != "POST") {
        return fixedRoute("login", wrongMethodAnswer("POST"));
    }
    return {.endpoint = "login", .exchange = viewerAuthorization_.beginLogin()};
}

Route Router::routeLogout(const RequestHead& head) {
    return fixedRoute("login",
                      head.method == "POST" ? viewerAuthorization_.logOut(head) : wrongMethodAnswer("POST"));
}

Answer Router::health() const {
    const auto stats = services_.store.stats();
    if (!stats) {
        services_.environment.report(stats.error());
        return errorAnswer(503, "the receiver cannot read its data");
    }
    return {.body = R"({"status":"ok"})"};
}

Answer Router::metrics() const {
    const auto stats = services_.store.stats();
    if (!stats) {
        services_.environment.report(stats.error());
        return errorAnswer(500, "the receiver could not read its data");
    }
    return {.body = services_.metrics.text(*stats), .contentType = "text/plain; version=0.0.4"};
}

}  // namespace mireth::receiver
