// Buttons in their states.
#include <QAbstractButton>
#include <QCheckBox>
#include <QCommandLinkButton>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QToolButton>

#include "qt/galleries/WidgetExhibit.hpp"

namespace mireth::qttest {

namespace {

template <class Button>
std::function<QWidget*()> button(void (*set)(Button&) = [](Button&) {}) {
    return [set]() -> QWidget* {
        auto* const made = new Button;
        made->setText("Secret");
        made->setIcon(canaryIcon());
        set(*made);
        return made;
    };
}

}  // namespace

std::vector<WidgetExhibit> buttonWidgets() {
    return {
        {"AbstractButton",
         button<Painted<QAbstractButton>>([](Painted<QAbstractButton>& it) { it.setMinimumSize(60, 30); })},
        {"PushButton", button<QPushButton>()},
        {"DisabledButton", button<QPushButton>([](QPushButton& it) { it.setEnabled(false); })},
        {"CheckedButton", button<QPushButton>([](QPushButton& it) {
             it.setCheckable(true);
             it.setChecked(true);
         })},
        {"PressedButton", button<QPushButton>([](QPushButton& it) { it.setDown(true); })},
        {"FlatDefaultButton", button<QPushButton>([](QPushButton& it) {
             it.setFlat(true);
             it.setDefault(true);
         })},
        {"ButtonWithAMenu", button<QPushButton>([](QPushButton& it) {
             auto* const menu = new QMenu(&it);
             menu->addAction(canaryIcon(), "Secret");
             // With the button's own click it would have a loop of its own.
             QObject::connect(&it, &QPushButton::released, menu,
                              [menu, &it] { menu->popup(it.mapToGlobal(QPoint(0, it.height()))); });
         })},
        {"ToolButton",
         button<QToolButton>([](QToolButton& it) { it.setToolButtonStyle(Qt::ToolButtonTextBesideIcon); })},
        {"HoveredToolButton", button<QToolButton>([](QToolButton& it) {
             it.setAutoRaise(true);
             it.setAttribute(Qt::WA_UnderMouse);
             it.setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
         })},
        {"ArrowToolButton", button<QToolButton>([](QToolButton& it) {
             it.setArrowType(Qt::DownArrow);
             it.setCheckable(true);
             it.setChecked(true);
             it.setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
         })},
        {"CheckBox", button<QCheckBox>()},
        {"CheckedCheckBox", button<QCheckBox>([](QCheckBox& it) { it.setChecked(true); })},
        {"PartlyCheckedBox", button<QCheckBox>([](QCheckBox& it) {
             it.setTristate(true);
             it.setCheckState(Qt::PartiallyChecked);
         })},
        {"RadioButton", button<QRadioButton>()},
        {"CheckedRadioButton", button<QRadioButton>([](QRadioButton& it) { it.setChecked(true); })},
        {"CommandLinkButton",
         button<QCommandLinkButton>([](QCommandLinkButton& it) { it.setDescription("Secret"); })},
    };
}

}  // namespace mireth::qttest
