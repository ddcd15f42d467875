// A host that stands outside the library's tree. There is no service where it looks for one, and it ends with
// status 0 when the library answers accordingly.
#include <MirethVex/Linux/LinuxPlatform.hpp>
#include <MirethVex/MirethVex.hpp>
#include <iostream>
#include <memory>
#include <utility>

namespace {

int failures = 0;

template <class T>
void expect(const T& answer, const T& expected, const char* what) {
    if (answer != expected) {
        std::cerr << what << " answered otherwise\n";
        ++failures;
    }
}

}  // namespace

int main() {
    using namespace mireth;
    platform::LinuxPlatformOptions options;
    options.information = {{"SR_ENDPOINT_URL", "http://127.0.0.1:9"},
                           {"KELDA_ENDPOINT_URL", "http://127.0.0.1:9"}};
    options.idiom = platform::UserInterfaceIdiom::phone;
    platform::LinuxPlatform phone(std::move(options));
    expect(MirethSR::installPlatformServices(phone.services()), true, "installPlatformServices");

    auto& library = MirethSR::shared();
    library.addLogListener(
        [](LogTag tag, LogLevel, const std::string& line) { std::cout << key(tag) << ": " << line << '\n'; });
    const auto window = std::make_shared<platform::Window>(Size{390, 844}, 3.0);
    expect(library.initializeProject("", "project", window), InitializationResult::paramsRequired,
           "no brand");
    expect(library.initializeProject("brand", "project", window), InitializationResult::success, "a project");
    expect(library.pauseRecording(), SessionPauseResult::notStarted, "a pause without a session");
    library.startRecording().then([&phone](const SessionStartResult& started) {
        std::cout << "start: " << caseName(started.kind) << '\n';
        expect(started.kind, SessionStartResult::Kind::fail, "a start without a service");
        phone.stopMainLoop();
    });
    expect(library.hasActiveSession(), true, "a session that is starting");
    // As a host's own HttpClient would write them down.
    expect(platform::HeaderFields{{"Retry-After", "1"}}.contains("retry-after"), true, "header names");
    phone.runMainLoop();
    expect(library.hasActiveSession(), false, "a session that could not start");
    library.reset();
    return failures == 0 ? 0 : 1;
}
