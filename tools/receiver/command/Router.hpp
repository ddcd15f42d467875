// The first that sees a request: lets it in or not, and sends it to the ingestion endpoints, the viewing API,
// the page or the operator's own addresses.
#pragma once

#include <memory>

#include "access/ViewerAuthorization.hpp"
#include "exchange/Exchange.hpp"
#include "exchange/Route.hpp"
#include "ingestion/Endpoints.hpp"
#include "service/Services.hpp"
#include "settings/AccessRules.hpp"
#include "viewing/ViewingApi.hpp"

namespace mireth::receiver {

class Router final : public RequestHandler {
  public:
    /// What the services refer to, and `rules`, outlive the router.
    Router(Services services, const AccessRules& rules)
        : services_(services),
          rules_(rules),
          endpoints_(services),
          api_(services),
          viewerAuthorization_(rules, services.environment) {}

    std::unique_ptr<Exchange> begin(const RequestHead& head) override;
    void headTooLong() override { services_.metrics.count({.endpoint = "other", .status = 431}); }
    void turnedAway() override { services_.metrics.countTurnedAway(); }
    void slowClientShed() override { services_.metrics.countShed(); }

  private:
    Route route(const RequestHead& head);
    Route routeUpload(const RequestHead& head, const RequestTarget& target);
    Route routeViewing(const RequestHead& head, const RequestTarget& target);
    Route routeLogin(const RequestHead& head);
    Route routeLogout(const RequestHead& head);
    Answer health() const;
    Answer metrics() const;

    const Services services_;
    const AccessRules& rules_;
    Endpoints endpoints_;
    const ViewingApi api_;
    ViewerAuthorization viewerAuthorization_;
};

}  // namespace mireth::receiver
