// A window of Qt Quick items, from a piece of QML.
#pragma once

#include <gtest/gtest.h>

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <atomic>
#include <memory>
#include <string>

#include "qt/support/EventLoop.hpp"

namespace mireth::qttest {

/// The window is grey, 200 × 100 and shown; `body` is what it holds. A warning of QML's fails the test.
class QmlScene {
  public:
    /// `style`: whose controls they are.
    explicit QmlScene(const std::string& body, const QUrl& folder = {}, const std::string& imports = {},
                      const std::string& style = "Basic") {
        engine_.setOutputWarningsToStandardError(false);
        QObject::connect(&engine_, &QQmlEngine::warnings, [](const QList<QQmlError>& errors) {
            for (const auto& error : errors) {
                if (isOfAStyle(error)) {
                    continue;
                }
                ADD_FAILURE() << error.toString().toStdString();
            }
        });
        QQmlComponent component(&engine_);
        const std::string text = "import QtQuick\nimport QtQuick.Window\nimport QtQuick.Controls." + style +
                                 "\nimport QtQuick.Layouts\n" + imports +
                                 "\n"
                                 "Window { width: 200; height: 100; visible: true; color: '#f0f0f0'\n" +
                                 body + "\n}";
        component.setData(QByteArray::fromStdString(text), folder);
        window_.reset(qobject_cast<QQuickWindow*>(component.create()));
        if (window_ == nullptr) {
            ADD_FAILURE() << component.errorString().toStdString();
            window_ = std::make_unique<QQuickWindow>();
        }
        QObject::connect(window_.get(), &QQuickWindow::frameSwapped, [this] { isDrawn_ = true; });
        runUntil([this] { return isDrawn_.load(); }, 5);
    }

    QQuickWindow& window() { return *window_; }
    /// By its objectName.
    QObject& object(const char* name) {
        auto* const found = window_->findChild<QObject*>(QString::fromLatin1(name));
        EXPECT_NE(found, nullptr) << name;
        return *found;
    }

  private:
    /// Qt's own styles do not go without complaints about themselves.
    static bool isOfAStyle(const QQmlError& error) {
        return error.url().toString().startsWith("qrc:/qt-project.org/") ||
               error.description().contains("Binding loop detected");
    }

    QQmlEngine engine_;
    std::atomic_bool isDrawn_ = false;
    std::unique_ptr<QQuickWindow> window_;
};

}  // namespace mireth::qttest
