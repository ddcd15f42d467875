// What widgets paint themselves, for recordings without masking.
#pragma once

#include <QObject>
#include <QPointer>
#include <QRect>
#include <QWidget>
#include <memory>
#include <unordered_map>
#include <vector>

#include "MirethVex/Platform/Image.hpp"
#include "MirethVex/Platform/View.hpp"

namespace mireth::qt {

/// A widget is painted when its picture is asked for first, and again only after it has repainted itself. The
/// painting is the app's code: it waits until a pass over the widgets has ended, since it may do anything to
/// them. Main thread only; made while there is an application.
class WidgetPictures final : public QObject {
  public:
    WidgetPictures();

    /// Puts what the widget paints itself into a new subview of `view`; what cannot be had makes `view` a
    /// plain block. With a graphics effect, which acts on both, its children are painted along.
    void add(QWidget& widget, platform::View& view);

    /// False for a widget whose children are in its picture.
    static bool holdsItsChildrenApart(const QWidget& widget);

    /// Paints what the pass has found without a picture, and lets go of the pictures that it did not ask for.
    /// Called from within its own painting, it only does the latter.
    void endPass();

  private:
    struct Kept {
        /// Null when it is gone; another one may come to lie at its place.
        QPointer<QWidget> widget;
        QRect part;
        platform::Image image;
        bool wasSeen = false;
    };
    struct Wanted {
        QPointer<QWidget> widget;
        QRect part;
        std::shared_ptr<platform::View> view;
    };

    bool eventFilter(QObject* watched, QEvent* event) override;
    void forget(const QWidget& repainted);
    void paint(const Wanted& wanted);

    std::unordered_map<const QObject*, Kept> kept_;
    std::vector<Wanted> wanted_;
    bool isPainting_ = false;
};

}  // namespace mireth::qt
