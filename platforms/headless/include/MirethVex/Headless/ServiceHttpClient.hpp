// A client whose server is a function: a test's own service, without a network.
#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <vector>

#include "MirethVex/Platform/BackgroundExecutor.hpp"
#include "MirethVex/Platform/HttpClient.hpp"

namespace mireth::headless {

/// Any thread may send. Answers come on the background executor, one request at a time. It keeps every
/// request it was given. There is no network behind it, and so none of the rules that guard against one: any
/// address is good, and no answer too long.
class ServiceHttpClient final : public platform::HttpClient {
  public:
    using Service = std::function<platform::HttpResult(const platform::HttpRequest&)>;

    /// `service` is called on the executor, one call at a time. Without one every request fails as on a
    /// device without a network. A client that goes waits for a running completion, but for no service: what
    /// that uses outlives the executor's work.
    explicit ServiceHttpClient(std::shared_ptr<platform::BackgroundExecutor> background,
                               Service service = {});
    ServiceHttpClient(const ServiceHttpClient&) = delete;
    ServiceHttpClient& operator=(const ServiceHttpClient&) = delete;
    ~ServiceHttpClient() override;

    AnyCancellable send(platform::HttpRequest request, Completion completion) override;

    /// For the requests that are answered from now on. Also from within a service or a completion.
    void setService(Service service);
    /// What was sent so far, in order.
    std::vector<platform::HttpRequest> requests() const;

  private:
    struct State;
    const std::shared_ptr<platform::BackgroundExecutor> background_;
    const std::shared_ptr<State> state_;
};

}  // namespace mireth::headless
