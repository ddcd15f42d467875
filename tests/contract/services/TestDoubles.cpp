// Holds the doubles of the unit tests to the contracts of what they stand for. Those that are no whole
// answers say so, and why, where they are declared.
#include <atomic>
#include <chrono>
#include <thread>

#include "BackgroundExecutorContract.hpp"
#include "FileManagerContract.hpp"
#include "HttpClientContract.hpp"
#include "MainQueueContract.hpp"
#include "platforms/linux/system/ThreadPoolExecutor.hpp"
#include "support/FakeHttpClient.hpp"
#include "support/ManualBackgroundExecutor.hpp"
#include "support/ManualMainQueue.hpp"
#include "support/MemoryFileManager.hpp"

namespace mireth::test {

namespace {

class ManualMainQueueHarness final : public MainQueueHarness {
  public:
    platform::MainQueue& queue() override { return *queue_; }
    double now() override { return queue_->now().count(); }
    bool runUntil(const std::function<bool()>& done, double limit) override {
        const double end = now() + limit;
        while (!done() && now() < end) {
            queue_->advance(platform::Seconds(0.001));
        }
        return done();
    }
    void destroyQueue() override { queue_.reset(); }
    int loggedErrors() override { return errors_; }

  private:
    int errors_ = 0;
    std::unique_ptr<ManualMainQueue> queue_ =
        std::make_unique<ManualMainQueue>([this](std::string_view) { ++errors_; });
};

/// With a thread that says so all the time.
class ManualExecutorHarness final : public BackgroundExecutorHarness {
  public:
    ManualExecutorHarness() = default;
    ManualExecutorHarness(const ManualExecutorHarness&) = delete;
    ManualExecutorHarness& operator=(const ManualExecutorHarness&) = delete;
    ~ManualExecutorHarness() override { stop(); }

    platform::BackgroundExecutor& executor() override { return *executor_; }
    void destroyExecutor() override {
        stop();
        executor_.reset();
    }
    int loggedErrors() override { return errors_.count(); }

  private:
    void drive() {
        while (!stopped_) {
            if (!executor_->runOne()) {
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }
        }
    }
    void stop() {
        stopped_ = true;
        if (driver_.joinable()) {
            driver_.join();
        }
    }

    Counter errors_;
    std::unique_ptr<ManualBackgroundExecutor> executor_ =
        std::make_unique<ManualBackgroundExecutor>([this](std::string_view) { errors_.increment(); });
    std::atomic<bool> stopped_{false};
    std::thread driver_{[this] { drive(); }};
};

class FakeHttpClientHarness final : public HttpClientHarness {
  public:
    platform::HttpClient& client() override { return *client_; }
    void destroyClient() override { client_.reset(); }
    std::string origin() override { return "https://sr.test"; }
    void setService(Service service) override {
        client_->setAnswer(
            [service = std::move(service), origin = origin()](const platform::HttpRequest& request) {
                return service(seenOf(request, origin));
            });
    }

  private:
    const std::shared_ptr<platform::ThreadPoolExecutor> threads_ =
        std::make_shared<platform::ThreadPoolExecutor>(2);
    std::unique_ptr<FakeHttpClient> client_ = std::make_unique<FakeHttpClient>(threads_);
};

class MemoryFilesHarness final : public FileManagerHarness {
  public:
    MemoryFilesHarness() { files_.directories.insert("/caches"); }

    platform::FileManager& files() override { return files_; }
    std::filesystem::path expectedCachesDirectory() override { return "/caches"; }
    std::filesystem::path root() override { return "/caches"; }

  private:
    tests::MemoryFileManager files_;
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(Doubles, MainQueueContract,
                         testing::Values(implementation<MainQueueHarness, ManualMainQueueHarness>("Manual")),
                         nameOfImplementation);
INSTANTIATE_TEST_SUITE_P(
    Doubles, BackgroundExecutorContract,
    testing::Values(implementation<BackgroundExecutorHarness, ManualExecutorHarness>("Manual")),
    nameOfImplementation);
INSTANTIATE_TEST_SUITE_P(Doubles, HttpClientContract,
                         testing::Values(implementation<HttpClientHarness, FakeHttpClientHarness>("Fake")),
                         nameOfImplementation);

INSTANTIATE_TEST_SUITE_P(Doubles, FileManagerContract,
                         testing::Values(implementation<FileManagerHarness, MemoryFilesHarness>("Memory")),
                         nameOfImplementation);

}  // namespace mireth::test
