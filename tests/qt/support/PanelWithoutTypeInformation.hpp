// A widget of an app that was built without run-time type information.
#pragma once

#include <QWidget>
#include <memory>

namespace mireth::qttest {

std::unique_ptr<QWidget> panelWithoutTypeInformation(QWidget& parent);

}  // namespace mireth::qttest
