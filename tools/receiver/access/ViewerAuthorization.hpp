// Authorises viewers: checks what a request for the viewing side must prove, and logs viewers in and out.
// Used by the router.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "access/RateLimiter.hpp"
#include "access/Viewers.hpp"
#include "base/Environment.hpp"
#include "exchange/Exchange.hpp"
#include "settings/AccessRules.hpp"

namespace mireth::receiver {

/// Any thread may call.
class ViewerAuthorization {
  public:
    /// Both outlive this object.
    ViewerAuthorization(const AccessRules& rules, const Environment& environment)
        : rules_(rules), environment_(environment) {}

    /// The answer that turns a request away whose host is not the receiver's, or that would change something
    /// and may come from another site's page; none when it may pass.
    std::optional<Answer> refuseForeign(const RequestHead& head) const;
    /// The answer for one who has to log in first; none when a viewer sent the request.
    std::optional<Answer> refuseStranger(const RequestHead& head) const;

    /// POST /login, POST /logout and GET /api/viewer.
    std::unique_ptr<Exchange> beginLogin();
    Answer logOut(const RequestHead& head);
    Answer describe(const RequestHead& head) const;

  private:
    Answer logIn(const std::string& body);
    Answer refuseLogin();
    bool isViewer(const RequestHead& head) const;
    std::string cookie(const std::string& value, long seconds) const;
    const char* cookieName() const { return rules_.secure ? "__Host-mireth" : "mireth"; }

    const AccessRules& rules_;
    const Environment& environment_;
    Viewers viewers_;          // guards itself
    RateLimiter wrongTokens_;  // guards itself
};

}  // namespace mireth::receiver
