// Nobody who posts a line shows a token, so what is taken must be of something that is known already.
#include "ingestion/ClientLogs.hpp"

#include <nlohmann/json.hpp>
#include <utility>

#include "base/JsonText.hpp"
#include "wire/ClientLogForm.hpp"

namespace mireth::receiver {
namespace {

// Of one project. Far more than its clients come to; nothing else bounds it when strangers know of it.
constexpr UploadRate logRate{.perSecond = 100, .burst = 1000};

// A line says in its JSON which session it belongs to. None when it names none, as a line that was written
// before its session began, or one that is no JSON object.
std::optional<std::string> sessionNamedIn(const std::string& message) {
    const auto json = parseJson(message, {.bytes = ClientLogs::longestBody});
    if (!json || !json->is_object() || !json->contains("sessionId")) {
        return std::nullopt;
    }
    const auto& id = json->at("sessionId");
    return id.is_string() ? id.get<std::string>() : std::string();
}

}  // namespace

Answer ClientLogs::refuse(int status, const std::string& why) const {
    services_.environment.report("a log line was refused: " + why);
    return {.status = status, .body = refusal};
}

std::optional<Answer> ClientLogs::objection(const std::string& brandId, const std::string& projectId,
                                            const std::string& sessionId) const {
    const auto session = services_.store.session(sessionId);
    if (!session) {
        return refuse(500, session.error());
    }
    const bool isOfProject = *session && (*session)->brandId == brandId && (*session)->projectId == projectId;
    return isOfProject ? std::nullopt : std::optional(refuse(200, "its session is unknown"));
}

Answer ClientLogs::answer(const std::string& brandId, const std::string& projectId, const std::string& body) {
    auto form = readClientLogForm(body);
    if (!form) {
        return refuse(400, form.error());
    }
    const auto project = brandId + "/" + projectId;
    const bool named = !brandId.empty() && !projectId.empty();
    if (!named || services_.config.find(brandId, projectId) == nullptr) {
        return refuse(200, "unknown project " + project);
    }
    const auto [payingBrand, payingProject] = services_.config.payerOf(brandId, projectId);
    if (!rate_.take(payingBrand, payingProject, logRate, services_.environment.steadyNow())) {
        return refuse(200, "the project posts too fast");
    }
    const LogLine line{.sessionId = sessionNamedIn(form->message),
                       .receivedMillis = services_.environment.wallMillis(),
                       .levelName = std::move(form->levelName),
                       .message = std::move(form->message),
                       .brandId = payingBrand,
                       .projectId = payingProject};
    if (line.sessionId) {
        if (auto refused = objection(brandId, projectId, *line.sessionId)) {
            return *refused;
        }
    }
    const auto outcome = services_.store.addLogLine(line, services_.config.limits);
    if (!outcome) {
        return refuse(500, outcome.error());
    }
    switch (*outcome) {
        case LineOutcome::kept:
            break;
        case LineOutcome::unknown:
            return refuse(200, "its session is unknown");
        case LineOutcome::full:
            return refuse(413, "as many are kept as are allowed (" +
                                   (line.sessionId ? "session " + *line.sessionId : "project " + project) +
                                   ")");
        case LineOutcome::noRoom:
            return refuse(507, "there is no room left on the disk");
    }
    return {.status = 200, .body = R"({"status":"Success"})"};
}

}  // namespace mireth::receiver
