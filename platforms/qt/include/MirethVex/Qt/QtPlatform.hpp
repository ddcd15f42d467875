// Everything the library asks of a phone, answered by a Qt 6 application. For apps of widgets and of Qt
// Quick.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "MirethVex/Base/Export.hpp"
#include "MirethVex/Linux/LinuxPlatform.hpp"
#include "MirethVex/Platform/PlatformServices.hpp"
#include "MirethVex/Platform/ViewClass.hpp"
#include "MirethVex/Platform/Window.hpp"
#include "MirethVex/PublicSide/DataModels/Enums/InitializationResult.hpp"

class QWidget;
class QWindow;

namespace mireth::qt {

/// What is not Qt's to answer comes from Linux. Main thread only, while the QGuiApplication is there; the
/// services may outlive both and then do nothing on the main thread.
class MIRETH_EXPORT QtPlatform {
  public:
    /// Throws std::system_error when there are no threads to be had.
    explicit QtPlatform(platform::LinuxPlatformOptions options = {});
    QtPlatform(const QtPlatform&) = delete;
    QtPlatform& operator=(const QtPlatform&) = delete;
    ~QtPlatform();

    /// The same services at every call.
    platform::PlatformServices services() const;

    /// What the library records of an app's window. For a widget: the window that it is in, which need not be
    /// shown yet; so also for the window of a QQuickWidget's items, once the widget is shown.
    std::shared_ptr<platform::Window> windowOf(QWindow& window) const;
    std::shared_ptr<platform::Window> windowOf(QWidget& widget) const;

    /// Runs what was posted to the main queue, and nothing else of the main thread's, until `done` or for
    /// `limit`; the last value of `done`. Work that is due later does not run. Blocks: the app's windows do
    /// not answer meanwhile.
    bool runMainQueue(const std::function<bool()>& done, platform::Seconds limit) const;

    /// As `LinuxPlatform::warnings`.
    std::vector<std::string> warnings() const;

  private:
    struct Parts;
    const std::unique_ptr<Parts> parts_;
};

/// Makes Qt's answers those of `MirethSR::shared()`, and QML know the module `MirethVex`. Call it once, after
/// the QGuiApplication was made and before anything else of the library. False, and the services stay as they
/// are, when it was called before or the library stands on other services already; false also, with a line on
/// standard error, without a QGuiApplication or when there are no threads to be had. Main thread.
///
/// It is for that one QGuiApplication. After it is gone nothing of the library runs on the main thread any
/// more, and in another one of the same process nothing is recorded.
MIRETH_EXPORT bool install(platform::LinuxPlatformOptions options = {}) noexcept;

/// `MirethSR::shared().initializeProject` for one of the app's windows; without one for the focused window,
/// else the first that is visible. While a dialog, a menu or a window that another one contains has the
/// focus, it is the window that they belong to. Installs Qt's answers when nothing was installed yet; where
/// the library stands on other services the window is not looked at. `cannotGetKeyWindow` also when nothing
/// can be installed. Main thread.
MIRETH_EXPORT InitializationResult initializeProject(const std::string& brandId,
                                                     const std::string& projectId) noexcept;
MIRETH_EXPORT InitializationResult initializeProject(const std::string& brandId, const std::string& projectId,
                                                     QWindow* window) noexcept;
MIRETH_EXPORT InitializationResult initializeProject(const std::string& brandId, const std::string& projectId,
                                                     QWidget* window) noexcept;
/// As without a window.
MIRETH_EXPORT InitializationResult initializeProject(const std::string& brandId, const std::string& projectId,
                                                     std::nullptr_t window) noexcept;

/// Stops the session and delivers what it has recorded, for an app that is about to quit: it blocks, until
/// all is done or for `patience`. Of the main thread's work only the library's own runs meanwhile. True when
/// the stop was answered in time, whatever the answer; false also without a session. Main thread, while the
/// QGuiApplication is there.
MIRETH_EXPORT bool finishRecording(platform::Seconds patience);

/// A class for `VexConfiguration::additionalViewTypesToMask`, by its C++ name, with or without its
/// namespaces, or by the name of its QML type, `CardNumber` for CardNumber.qml. Its subclasses are masked
/// with it. The class need not be loaded yet, and a name that none bears masks nothing;
/// `VexConfiguration::create` knows the name from then on.
MIRETH_EXPORT const platform::ViewClass& viewClassNamed(const std::string& name);

}  // namespace mireth::qt
