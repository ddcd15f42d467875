// The exhibits of the widgets' gallery, by family, and what their makers share.
#pragma once

#include <QEvent>
#include <QPainter>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "qt/galleries/Canaries.hpp"

namespace mireth::qttest {

/// A widget whose texts and pictures are canaries.
struct WidgetExhibit {
    std::string name;
    std::function<QWidget*()> make;
    /// False for what is no block, as its looks are left out but for a plain colour, or drawn anew.
    bool isBlock = true;
};

inline std::ostream& operator<<(std::ostream& out, const WidgetExhibit& exhibit) {
    return out << exhibit.name;
}

std::vector<WidgetExhibit> buttonWidgets();
std::vector<WidgetExhibit> inputWidgets();
std::vector<WidgetExhibit> textWidgets();
std::vector<WidgetExhibit> viewWidgets();
std::vector<WidgetExhibit> containerWidgets();
std::vector<WidgetExhibit> dialogWidgets();
std::vector<WidgetExhibit> popUpWidgets();
std::vector<WidgetExhibit> paintedWidgets();

/// All of them.
std::vector<WidgetExhibit> widgetExhibits();

/// Makes a widget and sets it up.
template <class T, class... Arguments>
std::function<QWidget*()> of(void (*set)(T&), Arguments... arguments) {
    return [=]() -> QWidget* {
        auto* const widget = new T(arguments...);
        set(*widget);
        return widget;
    };
}

/// Runs when the widget has been shown.
template <class T>
void later(T& widget, void (*work)(T&)) {
    QTimer::singleShot(0, &widget, [&widget, work] { work(widget); });
}

/// A class of the app's own, which draws text over all of itself.
template <class Base>
class Painted : public Base {
  public:
    using Base::Base;

  protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        painter.fillRect(this->rect(), canary);
    }
};

}  // namespace mireth::qttest
