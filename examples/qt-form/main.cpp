// A form of widgets that records itself. Its endpoints and its kind of device come from the file that
// MIRETHVEX_INFO names.
#include <MirethVex/MirethVex.hpp>
#include <MirethVex/Qt/QtPlatform.hpp>
#include <QApplication>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QSlider>
#include <chrono>
#include <iostream>

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QWidget form;
    form.setProperty("mirethScreen", "Order");
    QFormLayout layout(&form);
    layout.addRow("Name", new QLineEdit);
    layout.addRow("Cups", new QSlider(Qt::Horizontal));
    auto* const order = new QPushButton("Order");
    layout.addRow(order);
    QObject::connect(order, &QPushButton::clicked, &form, &QWidget::close);
    form.show();

    mireth::qt::install();
    mireth::qt::initializeProject("my-brand", "my-project", &form);
    mireth::MirethSR::shared().startRecording().then(
        [](const auto& started) { std::cout << "recording: " << caseName(started.kind) << std::endl; });

    // Before the window is gone: what is recorded but not delivered yet.
    QObject::connect(&application, &QCoreApplication::aboutToQuit,
                     [] { mireth::qt::finishRecording(std::chrono::seconds(5)); });
    return QApplication::exec();
}
