// Holds the doubles of the unit tests to the contracts of what they stand for.
#include "FileManagerContract.hpp"
#include "HttpClientContract.hpp"
#include "platforms/linux/system/ThreadPoolExecutor.hpp"
#include "support/FakeHttpClient.hpp"
#include "support/MemoryFileManager.hpp"

namespace mireth::test {

namespace {

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

INSTANTIATE_TEST_SUITE_P(Doubles, HttpClientContract,
                         testing::Values(implementation<HttpClientHarness, FakeHttpClientHarness>("Fake")),
                         nameOfImplementation);

INSTANTIATE_TEST_SUITE_P(Doubles, FileManagerContract,
                         testing::Values(implementation<FileManagerHarness, MemoryFilesHarness>("Memory")),
                         nameOfImplementation);

}  // namespace mireth::test
