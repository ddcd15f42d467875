// A Qt program that knows nothing of being recorded: windows STEP... It takes the steps one after the other,
// each for a while, and ends with status 7. A step is "show:NAME", "hide:NAME", "show-again:NAME", "suspend"
// or "frameless-items".
#include <QApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QStringList>
#include <QTimer>
#include <QWidget>
#include <map>
#include <memory>
#include <utility>

namespace {

constexpr int aWhile = 1700;

/// Each is as wide as none of the others, and 200 high.
struct Kind {
    int width;
    Qt::WindowFlags flags;
};

const std::map<QString, Kind> kinds{
    {"main", {300, Qt::Window}},
    {"helper", {120, Qt::Window}},
    {"log-in", {200, Qt::Window}},
    {"splash", {100, Qt::Window | Qt::FramelessWindowHint}},
    {"tray-icon", {22, Qt::FramelessWindowHint | Qt::BypassWindowManagerHint}},
    {"overlay", {400, Qt::Window | Qt::WindowTransparentForInput}},
    {"kiosk", {800, Qt::FramelessWindowHint | Qt::BypassWindowManagerHint}},
    {"own-frame", {350, Qt::Window | Qt::FramelessWindowHint}},
};

class Program {
  public:
    void take(const QString& step) {
        const QString what = step.section(':', 0, 0);
        const QString name = step.section(':', 1);
        if (what == "show") {
            window(name).show();
        } else if (what == "hide") {
            window(name).hide();
        } else if (what == "show-again") {
            window(name).hide();
            window(name).show();
        } else if (what == "suspend") {
            Q_EMIT qGuiApp->applicationStateChanged(Qt::ApplicationSuspended);
            QTimer::singleShot(aWhile / 2, qGuiApp,
                               [] { Q_EMIT qGuiApp->applicationStateChanged(Qt::ApplicationActive); });
        } else {
            showItems();
        }
    }

  private:
    QWidget& window(const QString& name) {
        auto& window = windows_[name];
        if (window == nullptr) {
            const Kind& kind = kinds.at(name);
            window = std::make_unique<QWidget>(nullptr, kind.flags);
            window->resize(kind.width, name == "kiosk" ? 800 : 200);
        }
        return *window;
    }

    void showItems() {
        QQmlComponent component(&engine_);
        component.setData(
            "import QtQuick\n"
            "Window { flags: Qt.FramelessWindowHint; width: 250; height: 200; visible: true }",
            {});
        items_.reset(component.create());
    }

    std::map<QString, std::unique_ptr<QWidget>> windows_;
    QQmlEngine engine_;
    std::unique_ptr<QObject> items_;
};

}  // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    Program program;
    QStringList steps = QCoreApplication::arguments().mid(1);
    QTimer next;
    const auto takeNext = [&] {
        if (steps.isEmpty()) {
            QCoreApplication::exit(7);
        } else {
            // "a+b" is two steps at once.
            const auto now = steps.takeFirst().split('+');
            for (const QString& step : now) {
                program.take(step);
            }
        }
    };
    QObject::connect(&next, &QTimer::timeout, takeNext);
    next.start(aWhile);
    QTimer::singleShot(0, takeNext);
    return QApplication::exec();
}
