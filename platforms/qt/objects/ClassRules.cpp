#include "platforms/qt/objects/ClassRules.hpp"

#include <algorithm>
#include <array>
#include <span>
#include <string_view>

namespace mireth::qt {

namespace {

struct Rule {
    std::string_view name;
    Shown shown;
    /// Of the class itself, not of its subclasses.
    bool emptyIsHarmless = false;
};

/// Text, input, pictures and lists are masked whole. So is every other class that draws into its viewport.
/// Containers are walked; of themselves only colours and frames show, so that a title or a message, which
/// they draw themselves, does not.
constexpr std::array widgetRules{
    Rule{"QWidget", Shown::container, true},
    Rule{"QFrame", Shown::container, true},
    Rule{"QMainWindow", Shown::container, true},
    Rule{"QDialog", Shown::container, true},
    Rule{"QStackedWidget", Shown::container, true},
    Rule{"QSplitter", Shown::container, true},
    Rule{"QSplitterHandle", Shown::container, true},
    Rule{"QTabWidget", Shown::container, true},
    Rule{"QDialogButtonBox", Shown::container, true},
    Rule{"QSizeGrip", Shown::container, true},
    Rule{"QRubberBand", Shown::container, true},
    Rule{"QFocusFrame", Shown::container, true},
    Rule{"QToolBar", Shown::container},
    Rule{"QScrollArea", Shown::container},
    Rule{"QGroupBox", Shown::container},
    Rule{"QStatusBar", Shown::container},
    Rule{"QDockWidget", Shown::container},
    Rule{"QScrollBar", Shown::styled, true},
    Rule{"QSlider", Shown::styled, true},
    Rule{"QDial", Shown::styled, true},
    Rule{"QAbstractSlider", Shown::label},
    Rule{"QLabel", Shown::label},
    Rule{"QAbstractButton", Shown::label},
    Rule{"QComboBox", Shown::label},
    Rule{"QProgressBar", Shown::label},
    Rule{"QTabBar", Shown::label},
    Rule{"QMenu", Shown::label},
    Rule{"QMenuBar", Shown::label},
    Rule{"QCalendarWidget", Shown::label},
    Rule{"QAbstractScrollArea", Shown::label},
    Rule{"QMdiSubWindow", Shown::label},
    Rule{"QSplashScreen", Shown::image},
    Rule{"QLineEdit", Shown::textField},
    Rule{"QAbstractSpinBox", Shown::textField},
    Rule{"QKeySequenceEdit", Shown::textField},
    Rule{"QTextEdit", Shown::textView},
    Rule{"QPlainTextEdit", Shown::textView},
    Rule{"QQuickWidget", Shown::hosted},
    Rule{"QOpenGLWidget", Shown::hosted},
    Rule{"QVideoWidget", Shown::hosted},
    Rule{"QWebEngineView", Shown::hosted},
    Rule{"QWindowContainer", Shown::hosted},
};

/// Items that draw nothing themselves are told by their flags, not by their class.
constexpr std::array itemRules{
    Rule{"QQuickRectangle", Shown::rectangle}, Rule{"QQuickPaddedRectangle", Shown::rectangle},
    Rule{"QQuickText", Shown::label},          Rule{"QQuickTextInput", Shown::textField},
    Rule{"QQuickTextEdit", Shown::textView},   Rule{"QQuickImageBase", Shown::image},
};

/// Harmless is what is known to the letter: a subclass may draw what it likes.
bool countsForClassItselfOnly(Shown shown) {
    return shown == Shown::rectangle || shown == Shown::styled;
}

MirroredClass nearestRule(std::span<const Rule> rules, const QMetaObject& type) {
    for (const QMetaObject* candidate = &type; candidate != nullptr; candidate = candidate->superClass()) {
        const auto rule = std::ranges::find(rules, std::string_view(candidate->className()), &Rule::name);
        if (rule == rules.end() || (candidate != &type && countsForClassItselfOnly(rule->shown))) {
            continue;
        }
        MirroredClass mirrored;
        mirrored.shown = rule->shown;
        mirrored.emptyIsHarmless = rule->emptyIsHarmless && candidate == &type;
        return mirrored;
    }
    return {};
}

}  // namespace

MirroredClass ruleForWidget(const QMetaObject& type) {
    return nearestRule(widgetRules, type);
}

MirroredClass ruleForItem(const QMetaObject& type) {
    return nearestRule(itemRules, type);
}

}  // namespace mireth::qt
