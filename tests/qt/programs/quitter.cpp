// A Qt application that ends in the middle of a session, in one of several ways: quitter WAY ENDPOINT CACHES.
#include <QApplication>
#include <QLabel>
#include <QTimer>
#include <cstdlib>
#include <memory>
#include <string>

#include "MirethVex/MirethVex.hpp"
#include "MirethVex/Qt/QtPlatform.hpp"

int main(int argc, char** argv) {
    using namespace mireth;
    if (argc != 4) {
        return 2;
    }
    const std::string way = argv[1];
    auto application = std::make_unique<QApplication>(argc, argv);
    auto window = std::make_unique<QLabel>("Secret");
    window->show();

    platform::LinuxPlatformOptions options;
    options.information = {
        {"SR_ENDPOINT_URL", argv[2]}, {"KELDA_ENDPOINT_URL", argv[2]}, {"DEVICE_IDIOM", "phone"}};
    options.cachesDirectory = argv[3];
    qt::install(options);
    qt::initializeProject("b1", "p1", window.get());
    MirethSR::shared().startRecording().then([&](const SessionStartResult& started) {
        if (started.kind != SessionStartResult::Kind::success) {
            std::_Exit(3);
        }
        // After the first frame.
        QTimer::singleShot(700, application.get(), [&] {
            if (way == "exit-in-a-slot") {
                std::exit(0);
            }
            QCoreApplication::quit();
        });
    });
    if (way == "quit-while-starting") {
        QTimer::singleShot(0, application.get(), &QCoreApplication::quit);
    }
    if (way == "finish-and-quit") {
        QObject::connect(application.get(), &QCoreApplication::aboutToQuit, [] {
            if (!qt::finishRecording(platform::Seconds(20))) {
                std::_Exit(4);
            }
        });
    }
    const int status = QApplication::exec();
    if (way == "application-goes-first") {
        // Widgets may not outlive it; what the library keeps does.
        window.reset();
        application.reset();
        MirethSR::shared().stopRecording().then([](const SessionCloseResult&) {});
        MirethSR::shared().reset();
    }
    return status;
}
