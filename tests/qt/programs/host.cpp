// A Qt application that says what the library answers to C++ and to QML.
#include <QGuiApplication>
#include <cstdio>
#include <string_view>

#include "MirethVex/MirethVex.hpp"
#include "MirethVex/Qt/QtPlatform.hpp"
#include "platforms/qt/qml/MirethControl.hpp"

namespace {

void say(const char* what, std::string_view answer) {
    std::printf("%s: %.*s\n", what, static_cast<int>(answer.size()), answer.data());
}

void say(const char* what, const QString& answer) {
    say(what, answer.toStdString());
}

void say(const char* what, bool answer) {
    say(what, std::string_view(answer ? "true" : "false"));
}

}  // namespace

int main(int argc, char** argv) {
    using mireth::qt::MirethControl;
    const QGuiApplication application(argc, argv);
    say("install", mireth::qt::install());
    say("initializeProject", caseName(mireth::qt::initializeProject("b1", "p1", nullptr)));
    // Without the engine of QML, which needs threads itself.
    MirethControl control;
    QObject::connect(&control, &MirethControl::started,
                     [](const QString& result) { say("started", result); });
    QObject::connect(&control, &MirethControl::stopped,
                     [](const QString& result) { say("stopped", result); });
    say("hasActiveSession", control.hasActiveSession());
    control.start("b1", "p1");
    control.logError("broken");
    say("pause", control.pause());
    say("resume", control.resume());
    control.stop();
    return 0;
}
