// What takes input: fields, boxes with a value, sliders.
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QCompleter>
#include <QDateTimeEdit>
#include <QDial>
#include <QFontComboBox>
#include <QKeySequenceEdit>
#include <QLineEdit>
#include <QScrollBar>
#include <QSlider>
#include <QSpinBox>
#include <QTest>

#include "qt/galleries/WidgetExhibit.hpp"

namespace mireth::qttest {

std::vector<WidgetExhibit> inputWidgets() {
    return {
        {"LineEdit", of<QLineEdit>([](QLineEdit& it) {
             it.setText("Secret");
             it.selectAll();
         })},
        {"DisabledLineEdit", of<QLineEdit>([](QLineEdit& it) {
             it.setText("Secret");
             it.setEnabled(false);
         })},
        {"ReadOnlyLineEdit", of<QLineEdit>([](QLineEdit& it) {
             it.setText("Secret");
             it.setReadOnly(true);
             it.setFrame(false);
         })},
        {"Password", of<QLineEdit>([](QLineEdit& it) {
             it.setText("Secret");
             it.setEchoMode(QLineEdit::Password);
         })},
        {"Placeholder", of<QLineEdit>([](QLineEdit& it) { it.setPlaceholderText("Secret"); })},
        {"LineEditWithAButton", of<QLineEdit>([](QLineEdit& it) {
             it.addAction(canaryIcon(), QLineEdit::TrailingPosition);
             it.setClearButtonEnabled(true);
             it.setText("Secret");
         })},
        {"CompletedLineEdit", of<QLineEdit>([](QLineEdit& it) {
             it.setText("Secr");
             it.setCompleter(new QCompleter({"Secret", "Secrets"}, &it));
             later(it, +[](QLineEdit& shown) { shown.completer()->complete(); });
         })},
        {"AbstractSpinBox", [] { return new Painted<QAbstractSpinBox>; }},
        {"SpinBox", of<QSpinBox>([](QSpinBox& it) { it.setPrefix("Secret"); })},
        {"DoubleSpinBox", of<QDoubleSpinBox>([](QDoubleSpinBox& it) { it.setSuffix("Secret"); })},
        {"DateEdit", of<QDateEdit>([](QDateEdit& it) { it.setDisplayFormat("'Secret' yyyy"); })},
        {"TimeEdit", of<QTimeEdit>([](QTimeEdit& it) { it.setDisplayFormat("'Secret' mm"); })},
        {"DateTimeEdit", of<QDateTimeEdit>([](QDateTimeEdit& it) { it.setCalendarPopup(true); })},
        {"OpenDateTimeEdit", of<QDateTimeEdit>([](QDateTimeEdit& it) {
             it.setCalendarPopup(true);
             later(
                 it, +[](QDateTimeEdit& shown) {
                     QTest::mousePress(&shown, Qt::LeftButton, {}, {shown.width() - 5, shown.height() / 2});
                 });
         })},
        {"ComboBox", of<QComboBox>([](QComboBox& it) { it.addItem(canaryIcon(), "Secret"); })},
        {"OpenComboBox", of<QComboBox>([](QComboBox& it) {
             it.addItems({"Secret", "Secret"});
             later(it, +[](QComboBox& shown) { shown.showPopup(); });
         })},
        {"EditableComboBox", of<QComboBox>([](QComboBox& it) {
             it.setEditable(true);
             it.setEditText("Secret");
         })},
        {"ComboBoxPlaceholder", of<QComboBox>([](QComboBox& it) { it.setPlaceholderText("Secret"); })},
        {"FontComboBox", [] { return new QFontComboBox; }},
        {"KeySequenceEdit", [] { return new QKeySequenceEdit(QKeySequence("Ctrl+S")); }},
        {"AbstractSlider", [] { return new Painted<QAbstractSlider>; }},
        {"OwnSlider", [] { return new Painted<QSlider>; }, false},
        {"OwnScrollBar", [] { return new Painted<QScrollBar>; }, false},
        {"OwnDial", [] { return new Painted<QDial>; }, false},
    };
}

}  // namespace mireth::qttest
