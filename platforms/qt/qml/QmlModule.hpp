// The module `MirethVex` of QML.
#pragma once

#include "MirethVex/Base/Export.hpp"

namespace mireth::qt {

/// Registers the module's types; further calls do nothing. Before QML that imports it is loaded.
MIRETH_EXPORT void registerQmlModule();

}  // namespace mireth::qt
