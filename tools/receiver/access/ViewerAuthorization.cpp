// Host, origin, cookie or bearer token, in this order.
#include "access/ViewerAuthorization.hpp"

#include <nlohmann/json.hpp>
#include <string_view>

#include "access/HostCheck.hpp"
#include "access/Secrets.hpp"
#include "base/HeaderParameters.hpp"
#include "base/JsonText.hpp"
#include "base/ObjectReader.hpp"
#include "exchange/ErrorAnswer.hpp"
#include "exchange/SmallExchange.hpp"

namespace mireth::receiver {
namespace {

constexpr std::size_t longestLogin = 1024;
// Of wrong tokens, by whomever. The right one passes at any time, or strangers could lock every viewer out;
// it is far too long to be guessed.
constexpr UploadRate wrongTokenRate{.perSecond = 1, .burst = 10};

bool isChange(const RequestHead& head) {
    return head.method != "GET" && head.method != "HEAD" && head.method != "OPTIONS";
}

// A page of another site can neither send the extra header without asking first, nor hide where it is from.
bool isFromOwnPage(const RequestHead& head) {
    const bool site = head.fetchSite.empty() || head.fetchSite == "same-origin" || head.fetchSite == "none";
    const std::string_view origin = head.origin;
    const auto scheme = origin.find("://");
    const bool own = origin.empty() || (scheme != std::string_view::npos &&
                                        equalsIgnoringCase(origin.substr(scheme + 3), head.host));
    return site && own && head.asked == "1";
}

std::string_view cookieIn(std::string_view header, std::string_view name) {
    while (!header.empty()) {
        const auto pair = header.substr(0, header.find(';'));
        header.remove_prefix(std::min(header.size(), pair.size() + 1));
        const auto begin = std::min(pair.find_first_not_of(' '), pair.size());
        const auto equals = pair.find('=');
        if (equals != std::string_view::npos && pair.substr(begin, equals - begin) == name) {
            return pair.substr(equals + 1);
        }
    }
    return {};
}

}  // namespace

std::optional<Answer> ViewerAuthorization::refuseForeign(const RequestHead& head) const {
    if (!isOwnHost(head.host, rules_.hosts)) {
        return errorAnswer(421, "the receiver is not known by this host name");
    }
    if (isChange(head) && !isFromOwnPage(head)) {
        return errorAnswer(403, "this may only be asked for from the receiver's own page");
    }
    return std::nullopt;
}

bool ViewerAuthorization::isViewer(const RequestHead& head) const {
    constexpr std::string_view bearer = "Bearer ";
    const std::string_view authorization = head.authorization;
    if (authorization.starts_with(bearer)) {
        return sameSecret(authorization.substr(bearer.size()), *rules_.viewingToken);
    }
    const auto secret = cookieIn(head.cookie, cookieName());
    return !secret.empty() && viewers_.knows(secret, environment_.steadyNow());
}

std::optional<Answer> ViewerAuthorization::refuseStranger(const RequestHead& head) const {
    if (!rules_.viewingToken || isViewer(head)) {
        return std::nullopt;
    }
    auto answer = errorAnswer(401, "log in first");
    answer.headers = {{"WWW-Authenticate", "Bearer"}};
    return answer;
}

std::string ViewerAuthorization::cookie(const std::string& value, long seconds) const {
    return std::string(cookieName()) + "=" + value + "; Path=/; Max-Age=" + std::to_string(seconds) +
           "; HttpOnly; SameSite=Strict" + (rules_.secure ? "; Secure" : "");
}

std::unique_ptr<Exchange> ViewerAuthorization::beginLogin() {
    return std::make_unique<SmallExchange>(longestLogin, errorBody("the request cannot be read"),
                                           [this](const std::string& body) { return logIn(body); });
}

Answer ViewerAuthorization::logIn(const std::string& body) {
    const auto json = parseJson(body, {.bytes = longestLogin});
    if (!json) {
        return errorAnswer(400, "the body is not JSON");
    }
    ObjectReader reader(*json);
    const auto token = reader.text("token");
    if (!reader.complaint().empty()) {
        return errorAnswer(400, "the body is not a token");
    }
    if (rules_.viewingToken && !sameSecret(token, *rules_.viewingToken)) {
        return refuseLogin();
    }
    const auto secret = environment_.newIdentifier();
    viewers_.add(secret, environment_.steadyNow());
    return {.status = 204,
            .headers = {{"Set-Cookie", cookie(secret, std::chrono::seconds(Viewers::lifetime).count())}}};
}

Answer ViewerAuthorization::refuseLogin() {
    if (!wrongTokens_.take("", "", wrongTokenRate, environment_.steadyNow())) {
        auto answer = errorAnswer(429, "the token is wrong, and too many were lately; wait a moment");
        answer.headers = {{"Retry-After", "5"}};
        return answer;
    }
    environment_.report("a login with a wrong token was refused");
    return errorAnswer(401, "the token is wrong");
}

Answer ViewerAuthorization::logOut(const RequestHead& head) {
    viewers_.remove(cookieIn(head.cookie, cookieName()));
    return {.status = 204, .headers = {{"Set-Cookie", cookie("", 0)}}};
}

Answer ViewerAuthorization::describe(const RequestHead& head) const {
    const char* const login = !rules_.viewingToken ? "none" : isViewer(head) ? "done" : "needed";
    return {.body = R"({"login":")" + std::string(login) + R"("})"};
}

}  // namespace mireth::receiver
