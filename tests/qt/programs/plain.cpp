// A Qt program that knows nothing of being recorded. It says what its children would find in the environment,
// shows a window for a while and ends with status 7.
#include <QApplication>
#include <QLabel>
#include <QMainWindow>
#include <QTimer>
#include <cstdio>

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    for (const char* const name : {"QT_QPA_GENERIC_PLUGINS", "QT_PLUGIN_PATH", "MIRETH_ATTACH_BRAND"}) {
        std::printf("%s=%s\n", name, qgetenv(name).constData());
    }
    QMainWindow window;
    window.setPalette(QPalette(QColor(200, 200, 200), QColor(240, 240, 240)));
    auto* const label = new QLabel("Secret");
    label->setStyleSheet("color: red; background: lime");
    window.setCentralWidget(label);
    window.resize(250, 500);
    window.show();
    QTimer::singleShot(1700, &window, [] { QCoreApplication::exit(7); });
    return QApplication::exec();
}
