// Runs one scenario as the command line asks: the composition root of mireth-phone.
#pragma once

#include <functional>
#include <memory>

#include "MirethVex/Platform/PlatformServices.hpp"
#include "phone/Options.hpp"
#include "phone/RecordedLibrary.hpp"

namespace mireth::phone {

/// Makes the library that stands on the services; called once.
using LibraryMaker = std::function<std::unique_ptr<RecordedLibrary>(platform::PlatformServices)>;

/// The exit status: 0, or 2 when the library answered otherwise than a step expects. Throws ScenarioError,
/// OptionError, and std::exception for what the system refuses.
int runPhone(const Options& options, const LibraryMaker& makeLibrary);

}  // namespace mireth::phone
