// Runs a QML file with the library installed: qml_host FILE ENDPOINT CACHES. What QML says goes to standard
// output, a line each.
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QTest>
#include <QWindow>
#include <cstdio>

#include "MirethVex/Qt/QtPlatform.hpp"

/// What the user does.
class Finger final : public QObject {
    Q_OBJECT
  public:
    Q_INVOKABLE void tap(QWindow* window, int x, int y) {
        QTest::mouseClick(window, Qt::LeftButton, {}, QPoint(x, y));
    }
};

int main(int argc, char** argv) {
    if (argc != 4) {
        return 2;
    }
    QGuiApplication application(argc, argv);
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString& line) {
        std::puts(line.toUtf8().constData());
        std::fflush(stdout);
    });
    mireth::platform::LinuxPlatformOptions options;
    options.information = {
        {"SR_ENDPOINT_URL", argv[2]}, {"KELDA_ENDPOINT_URL", argv[2]}, {"DEVICE_IDIOM", "phone"}};
    options.cachesDirectory = argv[3];
    mireth::qt::install(options);
    Finger finger;
    QQmlApplicationEngine engine;
    engine.setInitialProperties({{"finger", QVariant::fromValue<QObject*>(&finger)}});
    engine.load(QUrl::fromLocalFile(argv[1]));
    return engine.rootObjects().isEmpty() ? 1 : QGuiApplication::exec();
}

#include "qml_host.moc"
