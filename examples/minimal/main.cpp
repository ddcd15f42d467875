// The smallest host: a window, a session of three seconds, and the main loop of the Linux platform. It
// delivers to the service that MirethVex.info.json names: start mireth-receiver first.
#include <MirethVex/Linux/LinuxPlatform.hpp>
#include <MirethVex/MirethVex.hpp>
#include <iostream>
#include <memory>

int main() {
    using namespace mireth;
    auto& phone = platform::LinuxPlatform::shared();
    for (const auto& warning : phone.warnings()) {
        std::cerr << warning << '\n';
    }
    const auto window = std::make_shared<platform::Window>(Size{390, 844}, 3.0);

    auto& library = MirethSR::shared();
    library.initializeProject("my-brand", "my-project", window);
    library.startRecording().then([&](const SessionStartResult& started) {
        std::cout << "start: " << caseName(started.kind) << ' ' << started.reason.value_or("") << '\n';
        if (started.kind != SessionStartResult::Kind::success) {
            phone.stopMainLoop();
            return;
        }
        phone.services().mainQueue->postAfter(platform::Seconds(3), [&] {
            library.stopRecording().then([&](const SessionCloseResult& stopped) {
                std::cout << "stop: " << caseName(stopped.kind) << '\n';
                phone.stopMainLoop();
            });
        });
    });
    phone.runMainLoop();
}
