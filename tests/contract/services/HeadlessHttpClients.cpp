// Holds the headless HTTP clients to the contract: the one that answers itself, and the one in front of
// another.
#include <algorithm>
#include <atomic>
#include <thread>
#include <vector>

#include "DrivenLoop.hpp"
#include "HttpClientContract.hpp"
#include "HttpService.hpp"
#include "MirethVex/Headless/LoopBackgroundExecutor.hpp"
#include "MirethVex/Headless/OrderedHttpClient.hpp"
#include "MirethVex/Headless/ServiceHttpClient.hpp"
#include "platforms/linux/network/CurlHttpClient.hpp"
#include "platforms/linux/system/ThreadPoolExecutor.hpp"

namespace mireth::test {

namespace {

using namespace headless;
using Delivery = OrderedHttpClient::Delivery;

class ServiceClientHarness : public HttpClientHarness {
  public:
    explicit ServiceClientHarness(std::shared_ptr<platform::BackgroundExecutor> background)
        : background_(std::move(background)), client_(std::make_unique<ServiceHttpClient>(background_)) {}

    platform::HttpClient& client() override { return *client_; }
    void destroyClient() override { client_.reset(); }
    std::string origin() override { return "https://sr.test"; }
    void setService(Service service) override {
        client_->setService(
            [service = std::move(service), origin = origin()](const platform::HttpRequest& request) {
                return service(seenOf(request, origin));
            });
    }

  private:
    const std::shared_ptr<platform::BackgroundExecutor> background_;  // outlives the client
    std::unique_ptr<ServiceHttpClient> client_;
};

/// As in a paced session.
class ServiceOnThreadsHarness final : public ServiceClientHarness {
  public:
    ServiceOnThreadsHarness() : ServiceClientHarness(std::make_shared<platform::ThreadPoolExecutor>(2)) {}
};

/// As in virtual time. The loop is a base, since it outlives the client.
class ServiceOnTheLoopHarness final : private DrivenLoop, public ServiceClientHarness {
  public:
    ServiceOnTheLoopHarness() : ServiceClientHarness(std::make_shared<LoopBackgroundExecutor>(queue())) {}
};

class OrderedClientHarness final : public HttpClientHarness {
  public:
    explicit OrderedClientHarness(Delivery delivery)
        : client_(std::make_unique<OrderedHttpClient>(std::make_shared<platform::CurlHttpClient>(),
                                                      loop_.queue()->inFlight(), delivery)) {}

    platform::HttpClient& client() override { return *client_; }
    void destroyClient() override { client_.reset(); }
    std::string origin() override { return service_.origin(); }
    void setService(Service service) override { service_.setService(std::move(service)); }

  private:
    HttpService service_;
    DrivenLoop loop_;
    std::unique_ptr<OrderedHttpClient> client_;
};

Implementation<HttpClientHarness> makeOrdered(std::string name, Delivery delivery) {
    return {std::move(name), [delivery] { return std::make_unique<OrderedClientHarness>(delivery); }};
}

const auto inOrder = makeOrdered("OrderedOnTheLoop", Delivery::inOrderOnLoop);
const auto asTheyCome = makeOrdered("OrderedAsTheyCome", Delivery::asTheyCome);

}  // namespace

INSTANTIATE_TEST_SUITE_P(
    Headless, HttpClientContract,
    testing::Values(implementation<HttpClientHarness, ServiceOnThreadsHarness>("ServiceOnThreads"),
                    implementation<HttpClientHarness, ServiceOnTheLoopHarness>("ServiceOnTheLoop"), inOrder,
                    asTheyCome),
    nameOfImplementation);
INSTANTIATE_TEST_SUITE_P(Headless, HttpClientNetwork, testing::Values(inOrder, asTheyCome),
                         nameOfImplementation);

TEST(ServiceHttpClient, AnswersOneRequestAtATimeOnManyThreads) {
    const auto threads = std::make_shared<platform::ThreadPoolExecutor>(4);
    std::atomic<int> running = 0;
    std::atomic<int> most = 0;
    Counter completed;
    ServiceHttpClient client(threads, [&](const platform::HttpRequest&) {
        most = std::max(most.load(), ++running);
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        --running;
        return answer(200);
    });
    std::vector<AnyCancellable> tokens;
    constexpr int many = 40;
    for (int i = 0; i < many; ++i) {
        tokens.push_back(client.send(requestTo("https://sr.test/"),
                                     [&](const platform::HttpResult&) { completed.increment(); }));
    }
    EXPECT_TRUE(completed.waitFor(many));
    EXPECT_EQ(most, 1);
}

}  // namespace mireth::test
