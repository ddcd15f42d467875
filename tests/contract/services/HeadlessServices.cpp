// Holds the scripted application to the contract.
#include "MirethVex/Headless/HeadlessApplication.hpp"
#include "ValueServiceContracts.hpp"

namespace mireth::test {

namespace {

class HeadlessApplicationHarness final : public ApplicationHarness {
  public:
    platform::Application& application() override { return application_; }
    const platform::AppearanceDelivery& appearance() override { return application_.appearance(); }
    void setKeyWindow(std::shared_ptr<platform::Window> window) override {
        application_.setKeyWindow(std::move(window));
    }
    void moveToBackground() override { application_.moveToBackground(); }

  private:
    headless::HeadlessApplication application_;
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(Headless, ApplicationContract,
                         testing::Values(Implementation<ApplicationHarness>{
                             "Scripted", [] { return std::make_unique<HeadlessApplicationHarness>(); }}),
                         nameOfImplementation);

}  // namespace mireth::test
