// The module `MirethVex` of QML.
#pragma once

namespace mireth::qt {

/// Registers the module's types; further calls do nothing. Before QML that imports it is loaded.
void registerQmlModule();

}  // namespace mireth::qt
