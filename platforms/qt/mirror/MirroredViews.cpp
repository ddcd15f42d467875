#include "platforms/qt/mirror/MirroredViews.hpp"

#include "MirethVex/Platform/ImageView.hpp"
#include "MirethVex/Platform/TextViews.hpp"

namespace mireth::qt {

using namespace platform;

namespace {

class HostingController final : public ViewController, public AnyUIHostingViewController {
  public:
    HostingController() : ViewController("HostingController") {}
};

}  // namespace

std::shared_ptr<View> MirroredViews::make(const MirroredClass& mirrored) const {
    const ViewClass& viewClass = *mirrored.viewClass;
    switch (mirrored.shown) {
        case Shown::container:
        case Shown::rectangle:
        case Shown::styled:
            return std::make_shared<View>(viewClass);
        case Shown::textField:
            return std::make_shared<TextField>(viewClass);
        case Shown::textView:
            return std::make_shared<TextView>(viewClass);
        case Shown::image:
            return std::make_shared<ImageView>(viewClass);
        case Shown::hosted: {
            auto view = std::make_shared<View>(viewClass);
            view->setViewController(hosting_);
            return view;
        }
        case Shown::label:
            break;
    }
    return std::make_shared<Label>(viewClass);
}

std::shared_ptr<ViewController> MirroredViews::makeHosting() {
    return std::make_shared<HostingController>();
}

}  // namespace mireth::qt
