// Routing by the path's first segment.
#include "Router.hpp"

#include "ErrorAnswer.hpp"
#include "FixedExchange.hpp"
#include "RequestTarget.hpp"
#include "WebPages.hpp"

namespace mireth::receiver {

std::unique_ptr<Exchange> Router::begin(const RequestHead& head) {
    const auto target = parseTarget(head.target);
    if (!target) {
        return std::make_unique<FixedExchange>(errorAnswer(400, "the address cannot be read"));
    }
    if (target->segments.front() == "api") {
        return api_.begin(head, *target);
    }
    if (isWebPage(*target)) {
        return beginWebPage(head, *target);
    }
    return endpoints_.begin(head);
}

}  // namespace mireth::receiver
