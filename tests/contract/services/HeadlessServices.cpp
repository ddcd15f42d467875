// Holds the services of a script that hand out values, and the files with faults, to the contracts.
#include "FileManagerContract.hpp"
#include "MirethVex/Headless/CapturedSystemLog.hpp"
#include "MirethVex/Headless/FaultInjectingFileManager.hpp"
#include "MirethVex/Headless/HeadlessApplication.hpp"
#include "MirethVex/Headless/HeadlessClock.hpp"
#include "MirethVex/Headless/HeadlessDevice.hpp"
#include "MirethVex/Headless/MemoryStores.hpp"
#include "MirethVex/Headless/SeededRandomSource.hpp"
#include "ValueServiceContracts.hpp"
#include "platforms/linux/system/PosixFileManager.hpp"

namespace mireth::test {

namespace {

using namespace headless;

class HeadlessApplicationHarness final : public ApplicationHarness {
  public:
    platform::Application& application() override { return application_; }
    const platform::AppearanceDelivery& appearance() override { return application_.appearance(); }
    void setKeyWindow(std::shared_ptr<platform::Window> window) override {
        application_.setKeyWindow(std::move(window));
    }
    void moveToBackground() override { application_.moveToBackground(); }

  private:
    HeadlessApplication application_;
};

/// The stores know texts only, so there is no number in them.
TextByKey contractTexts() {
    return {{"name", "bridge"}, {"empty", ""}};
}

class InformationHarness final : public TextsHarness {
  public:
    std::optional<std::string> string(std::string_view key) override { return information_.string(key); }

  private:
    const MemoryInformationDictionary information_{contractTexts()};
};

class DefaultsTextsHarness final : public TextsHarness {
  public:
    std::optional<std::string> string(std::string_view key) override { return store_.string(key); }

  private:
    const MemoryKeyValueStore store_{contractTexts()};
};

class DefaultsHarness final : public KeyValueStoreHarness {
  public:
    platform::KeyValueStore& store() override { return store_; }
    void setFromOutside(const std::string& key, const std::string& value) override { store_.set(key, value); }
    void breakStore() override { store_.setReadable(false); }

  private:
    MemoryKeyValueStore store_;
};

class FaultlessFilesHarness final : public FileManagerHarness {
  public:
    platform::FileManager& files() override { return files_; }
    std::filesystem::path expectedCachesDirectory() override { return "/caches"; }
    std::filesystem::path root() override { return root_.path(); }

  private:
    TemporaryDirectory root_;
    FaultInjectingFileManager files_{std::make_shared<platform::PosixFileManager>(
        platform::PosixFileManagerOptions{.cachesDirectory = "/caches"})};
};

Implementation<ServiceHarness<platform::Clock>> makeClock(std::string name, std::optional<double> pace) {
    return serviceImplementation<platform::Clock>(std::move(name), [pace] {
        const auto queue = std::make_shared<VirtualMainQueue>(pace);
        queue->drain();
        return std::make_shared<HeadlessClock>(queue, 1'700'000'000'000, 1000);
    });
}

}  // namespace

INSTANTIATE_TEST_SUITE_P(
    Headless, ApplicationContract,
    testing::Values(implementation<ApplicationHarness, HeadlessApplicationHarness>("Scripted")),
    nameOfImplementation);
INSTANTIATE_TEST_SUITE_P(Headless, ClockContract,
                         testing::Values(makeClock("Virtual", std::nullopt), makeClock("Paced", 1000.0)),
                         nameOfImplementation);
INSTANTIATE_TEST_SUITE_P(Headless, DeviceContract,
                         testing::Values(serviceImplementation<platform::Device>(
                             "Scripted", [] { return std::make_shared<HeadlessDevice>(); })),
                         nameOfImplementation);
INSTANTIATE_TEST_SUITE_P(Headless, RandomSourceContract,
                         testing::Values(serviceImplementation<platform::RandomSource>(
                             "Seeded", [] { return std::make_shared<SeededRandomSource>(); })),
                         nameOfImplementation);
INSTANTIATE_TEST_SUITE_P(Headless, SystemLogContract,
                         testing::Values(serviceImplementation<platform::SystemLog>(
                             "Captured", [] { return std::make_shared<CapturedSystemLog>(); })),
                         nameOfImplementation);
INSTANTIATE_TEST_SUITE_P(Headless, TextsContract,
                         testing::Values(implementation<TextsHarness, InformationHarness>("Information"),
                                         implementation<TextsHarness, DefaultsTextsHarness>("Defaults")),
                         nameOfImplementation);
INSTANTIATE_TEST_SUITE_P(Headless, KeyValueStoreContract,
                         testing::Values(implementation<KeyValueStoreHarness, DefaultsHarness>("Defaults")),
                         nameOfImplementation);
INSTANTIATE_TEST_SUITE_P(
    Headless, FileManagerContract,
    testing::Values(implementation<FileManagerHarness, FaultlessFilesHarness>("WithoutFaults")),
    nameOfImplementation);
INSTANTIATE_TEST_SUITE_P(
    Headless, FileManagerOnDisk,
    testing::Values(implementation<FileManagerHarness, FaultlessFilesHarness>("WithoutFaults")),
    nameOfImplementation);

}  // namespace mireth::test
