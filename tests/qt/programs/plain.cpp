// A Qt program that knows nothing of being recorded: plain [dialog | log-in]. It says what its children would
// find in the environment, shows a window for a while, or a dialog, or the one after the other, says how
// often it heard that one was exposed, and ends with status 7.
#include <unistd.h>
#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QLabel>
#include <QMainWindow>
#include <QTimer>
#include <QVBoxLayout>

#include <cstdio>
#include <string_view>

namespace {

constexpr int aWhile = 1700;

QLabel* secret() {
    auto* const label = new QLabel("Secret");
    label->setStyleSheet("color: red; background: lime");
    return label;
}

void prepare(QWidget& window) {
    window.setPalette(QPalette(QColor(200, 200, 200), QColor(240, 240, 240)));
    window.resize(250, 500);
}

/// As a program's own that watches all of its windows.
class ExposeCount final : public QObject {
  public:
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        count += event->type() == QEvent::Expose ? 1 : 0;
        return false;
    }
    int count = 0;
};

}  // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    ExposeCount exposes;
    qApp->installEventFilter(&exposes);
    const std::string_view kind = argc > 1 ? argv[1] : "";
    for (const QByteArray name : {"QT_QPA_GENERIC_PLUGINS", "QT_PLUGIN_PATH", "MIRETHVEX_INFO"}) {
        const QByteArray value = qEnvironmentVariableIsSet(name) ? qgetenv(name) : "(not set)";
        std::printf("%s=%s\n", name.constData(), value.constData());
    }
    for (const char* const* variable = environ; *variable != nullptr; ++variable) {
        if (std::string_view(*variable).starts_with("MIRETH_ATTACH")) {
            std::puts(*variable);
        }
    }
    QMainWindow window;
    prepare(window);
    window.setCentralWidget(secret());
    QDialog dialog;
    prepare(dialog);
    auto* const layout = new QVBoxLayout(&dialog);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(secret());
    if (kind == "log-in") {
        QTimer::singleShot(aWhile, &dialog, &QDialog::accept);
        dialog.exec();
    }
    QWidget& last = kind == "dialog" ? static_cast<QWidget&>(dialog) : window;
    last.show();
    QTimer::singleShot(aWhile, &last, [] { QCoreApplication::exit(7); });
    const int status = QApplication::exec();
    std::printf("%d\n", exposes.count);
    return status;
}
