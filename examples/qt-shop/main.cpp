// A shop in QML that records itself. Its endpoints and its kind of device come from the file that
// MIRETHVEX_INFO names.
#include <MirethVex/Qt/QtPlatform.hpp>
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <chrono>

int main(int argc, char** argv) {
    QGuiApplication application(argc, argv);
    mireth::qt::install();
    // Before the window is gone: what is recorded but not delivered yet.
    QObject::connect(&application, &QCoreApplication::aboutToQuit,
                     [] { mireth::qt::finishRecording(std::chrono::seconds(5)); });
    QQmlApplicationEngine engine;
    engine.load(QUrl("qrc:/Shop.qml"));
    return engine.rootObjects().isEmpty() ? 1 : QGuiApplication::exec();
}
