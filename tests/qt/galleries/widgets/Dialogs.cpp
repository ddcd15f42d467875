// Dialogs, of Qt's own and of the app's.
#include <QColorDialog>
#include <QDialog>
#include <QErrorMessage>
#include <QFileDialog>
#include <QFontDialog>
#include <QInputDialog>
#include <QLabel>
#include <QMessageBox>
#include <QProgressDialog>
#include <QVBoxLayout>
#include <QWizard>

#include "qt/galleries/WidgetExhibit.hpp"

namespace mireth::qttest {

namespace {

QWidget* wizard() {
    auto* const made = new QWizard;
    auto* const page = new QWizardPage;
    page->setTitle("Secret");
    page->setSubTitle("Secret");
    page->setPixmap(QWizard::WatermarkPixmap, canaryPicture());
    made->addPage(page);
    return made;
}

QWidget* messageBox() {
    auto* const box = new QMessageBox(QMessageBox::Critical, "Secret", "Secret", QMessageBox::Ok);
    box->setIconPixmap(canaryPicture());
    box->setInformativeText("Secret");
    box->setDetailedText("Secret");
    return box;
}

}  // namespace

std::vector<WidgetExhibit> dialogWidgets() {
    return {
        {"Dialog", of<QDialog>([](QDialog& it) {
             it.setSizeGripEnabled(true);
             (new QVBoxLayout(&it))->addWidget(new QLabel("Secret"));
         })},
        {"Wizard", wizard},
        {"MessageBox", messageBox},
        {"InputDialog", of<QInputDialog>([](QInputDialog& it) {
             it.setLabelText("Secret");
             it.setTextValue("Secret");
         })},
        {"InputDialogOfAList", of<QInputDialog>([](QInputDialog& it) {
             it.setOption(QInputDialog::UseListViewForComboBoxItems);
             it.setComboBoxItems({"Secret", "Secret"});
         })},
        {"ProgressDialog", of<QProgressDialog>([](QProgressDialog& it) {
             it.setLabelText("Secret");
             it.setMinimumDuration(0);
         })},
        {"ErrorMessage", of<QErrorMessage>([](QErrorMessage& it) { it.showMessage("Secret"); })},
        {"FileDialog",
         of<QFileDialog>([](QFileDialog& it) { it.setOption(QFileDialog::DontUseNativeDialog); })},
        {"ColorDialog",
         of<QColorDialog>([](QColorDialog& it) { it.setOption(QColorDialog::DontUseNativeDialog); })},
        {"FontDialog",
         of<QFontDialog>([](QFontDialog& it) { it.setOption(QFontDialog::DontUseNativeDialog); })},
    };
}

}  // namespace mireth::qttest
