// Holds the Linux services to the contracts.
#include <chrono>
#include <thread>

#include "BackgroundExecutorContract.hpp"
#include "FileManagerContract.hpp"
#include "HttpClientContract.hpp"
#include "HttpService.hpp"
#include "MainQueueContract.hpp"
#include "MirethVex/Linux/PlainApplication.hpp"
#include "ValueServiceContracts.hpp"
#include "platforms/linux/network/CurlHttpClient.hpp"
#include "platforms/linux/network/NetlinkPathMonitor.hpp"
#include "platforms/linux/system/AsioMainQueue.hpp"
#include "platforms/linux/system/JournalSystemLog.hpp"
#include "platforms/linux/system/JsonFileInformationDictionary.hpp"
#include "platforms/linux/system/JsonFileKeyValueStore.hpp"
#include "platforms/linux/system/LinuxDevice.hpp"
#include "platforms/linux/system/PosixFileManager.hpp"
#include "platforms/linux/system/SystemClock.hpp"
#include "platforms/linux/system/SystemRandomSource.hpp"
#include "platforms/linux/system/ThreadPoolExecutor.hpp"

namespace mireth::test {

namespace {

using namespace platform;

class AsioMainQueueHarness final : public MainQueueHarness {
  public:
    MainQueue& queue() override { return *queue_; }
    double now() override {
        return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
    }
    bool runUntil(const std::function<bool()>& done, double limit) override {
        const double end = now() + limit;
        const auto check = queue_->scheduleRepeating(Seconds(0.001), [&] {
            if (done() || now() > end) {
                queue_->stop();
            }
        });
        queue_->run();
        return done();
    }
    void destroyQueue() override { queue_.reset(); }
    int loggedErrors() override { return errors_; }

  private:
    int errors_ = 0;
    std::unique_ptr<AsioMainQueue> queue_ =
        std::make_unique<AsioMainQueue>([this](std::string_view) { ++errors_; });
};

class ThreadPoolHarness final : public BackgroundExecutorHarness {
  public:
    BackgroundExecutor& executor() override { return *executor_; }
    void destroyExecutor() override { executor_.reset(); }
    int loggedErrors() override { return errors_.count(); }

  private:
    Counter errors_;
    std::unique_ptr<ThreadPoolExecutor> executor_ =
        std::make_unique<ThreadPoolExecutor>(2, [this](std::string_view) { errors_.increment(); });
};

class PosixFilesHarness final : public FileManagerHarness {
  public:
    explicit PosixFilesHarness(bool unnamedPendingFiles)
        : files_({.cachesDirectory = "/caches", .unnamedPendingFiles = unnamedPendingFiles}) {}
    FileManager& files() override { return files_; }
    std::filesystem::path expectedCachesDirectory() override { return "/caches"; }
    std::filesystem::path root() override { return root_.path(); }

  private:
    TemporaryDirectory root_;
    PosixFileManager files_;
};

class CurlHarness final : public HttpClientHarness {
  public:
    HttpClient& client() override { return *client_; }
    void destroyClient() override { client_.reset(); }
    std::string origin() override { return service_.origin(); }
    void setService(Service service) override { service_.setService(std::move(service)); }

  private:
    HttpService service_;
    std::unique_ptr<CurlHttpClient> client_ = std::make_unique<CurlHttpClient>();
};

class InformationHarness final : public TextsHarness {
  public:
    InformationHarness() : file_((writeFile(path(), R"({"name":"bridge","empty":"","number":7})"), path())) {}
    std::optional<std::string> string(std::string_view key) override { return file_.string(key); }

  private:
    std::filesystem::path path() const { return directory_ / "info.json"; }
    TemporaryDirectory directory_;
    JsonFileInformationDictionary file_;
};

class DefaultsHarness final : public KeyValueStoreHarness {
  public:
    KeyValueStore& store() override { return store_; }
    void setFromOutside(const std::string& key, const std::string& value) override {
        writeFile(path(), "{\"" + key + "\":\"" + value + "\"}");
    }
    void breakStore() override { writeFile(path(), "{\"client\": "); }

  private:
    std::filesystem::path path() const { return directory_ / "mireth/defaults.json"; }
    TemporaryDirectory directory_;
    JsonFileKeyValueStore store_{path()};
};

class DefaultsTextsHarness final : public TextsHarness {
  public:
    DefaultsTextsHarness()
        : store_((writeFile(path(), R"({"name":"bridge","empty":"","number":7})"), path())) {}
    std::optional<std::string> string(std::string_view key) override { return store_.string(key); }

  private:
    std::filesystem::path path() const { return directory_ / "defaults.json"; }
    TemporaryDirectory directory_;
    JsonFileKeyValueStore store_;
};

class PlainApplicationHarness final : public ApplicationHarness {
  public:
    Application& application() override { return application_; }
    const AppearanceDelivery& appearance() override { return application_.appearance(); }
    void setKeyWindow(std::shared_ptr<Window> window) override { application_.setKeyWindow(window); }
    void moveToBackground() override { application_.moveToBackground(); }

  private:
    PlainApplication application_;
};

class NetlinkHarness final : public PathMonitorHarness {
  public:
    std::unique_ptr<PathMonitor> makeMonitor() override { return std::make_unique<NetlinkPathMonitor>(); }
};

template <class Service, class Made>
Implementation<ServiceHarness<Service>> makeService(std::string name) {
    return serviceImplementation<Service>(std::move(name), [] { return std::make_shared<Made>(); });
}

Implementation<FileManagerHarness> makeFiles(std::string name, bool unnamedPendingFiles) {
    return {std::move(name), [=] { return std::make_unique<PosixFilesHarness>(unnamedPendingFiles); }};
}

}  // namespace

INSTANTIATE_TEST_SUITE_P(Linux, MainQueueContract,
                         testing::Values(implementation<MainQueueHarness, AsioMainQueueHarness>("Asio")),
                         nameOfImplementation);
INSTANTIATE_TEST_SUITE_P(
    Linux, BackgroundExecutorContract,
    testing::Values(implementation<BackgroundExecutorHarness, ThreadPoolHarness>("ThreadPool")),
    nameOfImplementation);
INSTANTIATE_TEST_SUITE_P(Linux, FileManagerContract,
                         testing::Values(makeFiles("Posix", true), makeFiles("PosixHiddenFiles", false)),
                         nameOfImplementation);
INSTANTIATE_TEST_SUITE_P(Linux, FileManagerOnDisk,
                         testing::Values(makeFiles("Posix", true), makeFiles("PosixHiddenFiles", false)),
                         nameOfImplementation);
INSTANTIATE_TEST_SUITE_P(Linux, HttpClientContract,
                         testing::Values(implementation<HttpClientHarness, CurlHarness>("Curl")),
                         nameOfImplementation);
INSTANTIATE_TEST_SUITE_P(Linux, HttpClientNetwork,
                         testing::Values(implementation<HttpClientHarness, CurlHarness>("Curl")),
                         nameOfImplementation);
INSTANTIATE_TEST_SUITE_P(Linux, ClockContract, testing::Values(makeService<Clock, SystemClock>("System")),
                         nameOfImplementation);
INSTANTIATE_TEST_SUITE_P(Linux, DeviceContract, testing::Values(makeService<Device, LinuxDevice>("This")),
                         nameOfImplementation);
INSTANTIATE_TEST_SUITE_P(Linux, RandomSourceContract,
                         testing::Values(makeService<RandomSource, SystemRandomSource>("System")),
                         nameOfImplementation);
INSTANTIATE_TEST_SUITE_P(Linux, SystemLogContract,
                         testing::Values(makeService<SystemLog, JournalSystemLog>("Journal")),
                         nameOfImplementation);
INSTANTIATE_TEST_SUITE_P(Linux, TextsContract,
                         testing::Values(implementation<TextsHarness, InformationHarness>("InformationFile"),
                                         implementation<TextsHarness, DefaultsTextsHarness>("DefaultsFile")),
                         nameOfImplementation);
INSTANTIATE_TEST_SUITE_P(
    Linux, KeyValueStoreContract,
    testing::Values(implementation<KeyValueStoreHarness, DefaultsHarness>("DefaultsFile")),
    nameOfImplementation);
INSTANTIATE_TEST_SUITE_P(
    Linux, ApplicationContract,
    testing::Values(implementation<ApplicationHarness, PlainApplicationHarness>("Plain")),
    nameOfImplementation);
INSTANTIATE_TEST_SUITE_P(Linux, PathMonitorContract,
                         testing::Values(implementation<PathMonitorHarness, NetlinkHarness>("Netlink")),
                         nameOfImplementation);

}  // namespace mireth::test
