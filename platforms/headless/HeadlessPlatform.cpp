// Puts the scripted phone together.
#include "MirethVex/Headless/HeadlessPlatform.hpp"

#include <utility>

#include "MirethVex/Base/FatalError.hpp"
#include "MirethVex/Headless/LoopBackgroundExecutor.hpp"
#include "MirethVex/Headless/OrderedHttpClient.hpp"
#include "MirethVex/Headless/SeededRandomSource.hpp"
#include "MirethVex/Headless/TrackedBackgroundExecutor.hpp"

namespace mireth::headless {

namespace {

std::shared_ptr<platform::BackgroundExecutor> makeBackground(
    const std::shared_ptr<VirtualMainQueue>& queue, std::shared_ptr<platform::BackgroundExecutor> threads) {
    if (queue->isVirtual()) {
        return std::make_shared<LoopBackgroundExecutor>(queue);
    }
    if (threads == nullptr) {
        fatalError("A paced headless platform needs threads for background work");
    }
    return std::make_shared<TrackedBackgroundExecutor>(std::move(threads), queue->inFlight());
}

}  // namespace

HeadlessPlatform::HeadlessPlatform(HeadlessOptions options)
    : queue_(std::make_shared<VirtualMainQueue>(options.pace)),
      background_(makeBackground(queue_, std::move(options.threads))),
      clock_(std::make_shared<HeadlessClock>(queue_, options.epochMillis, options.uptimeSeconds)),
      application_(std::make_shared<HeadlessApplication>()),
      network_(std::make_shared<HeadlessNetwork>(background_, options.network)),
      userDefaults_(std::make_shared<MemoryKeyValueStore>(std::move(options.userDefaults))),
      systemLog_(std::make_shared<CapturedSystemLog>()) {
    services_.mainQueue = queue_;
    services_.background = background_;
    services_.clock = clock_;
    services_.device = std::make_shared<HeadlessDevice>(std::move(options.device));
    services_.application = application_;
    services_.information = std::make_shared<MemoryInformationDictionary>(std::move(options.information));
    services_.userDefaults = userDefaults_;
    services_.http = makeHttp(std::move(options.http));
    services_.files = std::move(options.files);
    services_.systemLog = systemLog_;
    services_.assetWriters = std::move(options.assetWriters);
    services_.graphics = std::move(options.graphics);
    services_.random = std::make_shared<SeededRandomSource>(options.seed);
    services_.makePathMonitor = [network = network_] { return network->makeMonitor(); };
}

HeadlessPlatform::~HeadlessPlatform() {
    queue_->shutDown();
}

std::shared_ptr<platform::HttpClient> HeadlessPlatform::makeHttp(
    std::shared_ptr<platform::HttpClient> given) {
    if (given == nullptr) {
        // Its answers come on the background executor, which is counted and, in virtual time, in order.
        service_ = std::make_shared<ServiceHttpClient>(background_);
        return service_;
    }
    using Delivery = OrderedHttpClient::Delivery;
    return std::make_shared<OrderedHttpClient>(
        std::move(given), queue_->inFlight(),
        queue_->isVirtual() ? Delivery::inOrderOnLoop : Delivery::asTheyCome);
}

}  // namespace mireth::headless
