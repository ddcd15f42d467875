// What shows text, a number or a picture.
#include <QLCDNumber>
#include <QLabel>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QTextBrowser>
#include <QTextEdit>

#include "qt/galleries/WidgetExhibit.hpp"

namespace mireth::qttest {

std::vector<WidgetExhibit> textWidgets() {
    return {
        {"Label", of<QLabel>([](QLabel& it) { it.setText("Secret"); })},
        {"RichLabel", of<QLabel>([](QLabel& it) { it.setText("<b>Secret</b>"); })},
        {"LinkLabel", of<QLabel>([](QLabel& it) {
             it.setText("<a href='x'>Secret</a>");
             it.setTextInteractionFlags(Qt::TextBrowserInteraction);
         })},
        {"DisabledLabel", of<QLabel>([](QLabel& it) {
             it.setText("Secret");
             it.setEnabled(false);
         })},
        {"PictureLabel", of<QLabel>([](QLabel& it) { it.setPixmap(canaryPicture()); })},
        {"FramedLabel", of<QLabel>([](QLabel& it) {
             it.setFrameStyle(QFrame::Box | QFrame::Raised);
             it.setAutoFillBackground(true);
             it.setText("Secret");
         })},
        {"TextEdit", of<QTextEdit>([](QTextEdit& it) { it.setHtml("<h1>Secret</h1>"); })},
        {"TextEditPlaceholder", of<QTextEdit>([](QTextEdit& it) { it.setPlaceholderText("Secret"); })},
        {"ReadOnlyTextEdit", of<QTextEdit>([](QTextEdit& it) {
             it.setPlainText(QString("Secret\n").repeated(100));
             it.setReadOnly(true);
             it.selectAll();
         })},
        {"TextBrowser", of<QTextBrowser>([](QTextBrowser& it) { it.setHtml("<a href='x'>Secret</a>"); })},
        {"PlainTextEdit", of<QPlainTextEdit>([](QPlainTextEdit& it) { it.setPlainText("Secret"); })},
        {"ProgressBar", of<QProgressBar>([](QProgressBar& it) { it.setValue(50); })},
        {"FormattedProgressBar", of<QProgressBar>([](QProgressBar& it) {
             it.setFormat("Secret %p");
             it.setInvertedAppearance(true);
             it.setValue(50);
         })},
        {"LcdNumber", of<QLCDNumber>([](QLCDNumber& it) {
             it.display(42);
             it.setSegmentStyle(QLCDNumber::Flat);
         })},
    };
}

}  // namespace mireth::qttest
