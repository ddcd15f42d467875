// The addresses that recording clients call and what the receiver does for each. The router hands their
// requests here.
#pragma once

#include <memory>
#include <string>

#include "exchange/Exchange.hpp"
#include "exchange/RequestTarget.hpp"
#include "exchange/Route.hpp"
#include "ingestion/ClientLogs.hpp"
#include "ingestion/UploadLimits.hpp"
#include "service/Services.hpp"

namespace mireth::receiver {

/// Any thread may call.
class Endpoints {
  public:
    explicit Endpoints(Services services) : services_(services), logs_(services) {}

    /// `target` is the head's, without the prefix of an upload token.
    Route begin(const RequestHead& head, const RequestTarget& target);

  private:
    std::unique_ptr<Exchange> createSession();
    std::unique_ptr<Exchange> closeSession(const std::string& sessionId);
    std::unique_ptr<Exchange> recordPlayback(const std::string& contentType);
    std::unique_ptr<Exchange> configuration(const std::string& brandId, const std::string& projectId);
    std::unique_ptr<Exchange> clientLog(const RequestTarget& target);

    Answer answerCreate(const std::string& body);
    Answer answerClose(const std::string& sessionId, const std::string& body);
    Answer answerConfiguration(const std::string& brandId, const std::string& projectId) const;
    Answer refuseSession(int httpStatus, const std::string& why, const char* status = "ERROR") const;

    const Services services_;
    UploadLimits shared_;
    // Each guards itself.
    RateLimiter creations_;
    ClientLogs logs_;
};

}  // namespace mireth::receiver
