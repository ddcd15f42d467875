#include "qt/support/PanelWithoutTypeInformation.hpp"

#include <QFrame>

namespace mireth::qttest {

namespace {

class PanelWithoutTypeInformation : public QFrame {
  public:
    using QFrame::QFrame;
};

}  // namespace

std::unique_ptr<QWidget> panelWithoutTypeInformation(QWidget& parent) {
    return std::make_unique<PanelWithoutTypeInformation>(&parent);
}

}  // namespace mireth::qttest
