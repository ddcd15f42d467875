// Menus, tips and other windows that come and go.
#include <QLabel>
#include <QMenu>
#include <QSplashScreen>
#include <QToolTip>
#include <QWhatsThis>
#include <QWidgetAction>

#include "qt/galleries/WidgetExhibit.hpp"

namespace mireth::qttest {

std::vector<WidgetExhibit> popUpWidgets() {
    return {
        {"Menu", of<QMenu>([](QMenu& it) { it.addAction(canaryIcon(), "Secret"); })},
        {"MenuOfAllSorts", of<QMenu>([](QMenu& it) {
             it.addSection("Secret");
             it.addMenu("Secret")->addAction("Secret");
             QAction* const checked = it.addAction("Secret");
             checked->setCheckable(true);
             checked->setChecked(true);
             it.addAction("Secret")->setEnabled(false);
             auto* const label = new QWidgetAction(&it);
             label->setDefaultWidget(new QLabel("Secret"));
             it.addAction(label);
         })},
        {"ToolTip", of<QLabel>([](QLabel& it) {
             it.setText("Secret");
             later(
                 it, +[](QLabel& shown) {
                     QToolTip::setPalette(canaryPalette());
                     QToolTip::showText(shown.mapToGlobal(QPoint(20, 20)), "Secret", &shown);
                 });
         })},
        {"WhatsThis", of<QLabel>([](QLabel& it) {
             it.setText("Secret");
             later(
                 it, +[](QLabel& shown) {
                     QWhatsThis::showText(shown.mapToGlobal(QPoint(20, 20)), "Secret", &shown);
                 });
         })},
        {"SplashScreen", [] { return new QSplashScreen(canaryPicture(200)); }},
    };
}

}  // namespace mireth::qttest
