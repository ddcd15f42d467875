// A Qt application that stands outside the library's tree. There is no service where it looks for one, and it
// ends with status 0 when the library answers accordingly.
#include <MirethVex/MirethVex.hpp>
#include <MirethVex/Qt/QtPlatform.hpp>
#include <QApplication>
#include <QLabel>
#include <iostream>

int main(int argc, char** argv) {
    using namespace mireth;
    const QApplication application(argc, argv);
    QLabel window("Hello");
    window.show();

    platform::LinuxPlatformOptions options;
    options.information = {{"SR_ENDPOINT_URL", "http://127.0.0.1:9"},
                           {"KELDA_ENDPOINT_URL", "http://127.0.0.1:9"},
                           {"DEVICE_IDIOM", "phone"}};
    if (!qt::install(options) || qt::install(options)) {
        std::cerr << "install answered otherwise\n";
        return 1;
    }
    if (qt::initializeProject("brand", "project", &window) != InitializationResult::success) {
        std::cerr << "initializeProject answered otherwise\n";
        return 1;
    }
    MirethSR::shared().startRecording().then([](const SessionStartResult& started) {
        std::cout << "start: " << caseName(started.kind) << '\n';
        QCoreApplication::exit(started.kind == SessionStartResult::Kind::fail ? 0 : 1);
    });
    return QApplication::exec();
}
