// The real library behind the phone's calls.
#pragma once

#include <memory>

#include "MirethVex/Platform/PlatformServices.hpp"
#include "phone/RecordedLibrary.hpp"

namespace mireth::phone {

/// MirethSR's shared instance on `services`, as a host uses it; once in a process. Its project is forgotten
/// when the result is dropped. Throws std::logic_error at the second call.
std::unique_ptr<RecordedLibrary> makeMirethLibrary(platform::PlatformServices services);

}  // namespace mireth::phone
