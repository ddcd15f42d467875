// The first that sees a request: sends it to the ingestion endpoints, the viewing API or the page.
#pragma once

#include <memory>

#include "Endpoints.hpp"
#include "Exchange.hpp"
#include "Services.hpp"
#include "ViewingApi.hpp"

namespace mireth::receiver {

class Router final : public RequestHandler {
  public:
    explicit Router(Services services) : endpoints_(services), api_(services) {}

    std::unique_ptr<Exchange> begin(const RequestHead& head) override;

  private:
    Endpoints endpoints_;
    const ViewingApi api_;
};

}  // namespace mireth::receiver
