#include "PublicSide/MirethSRDiagnostics.hpp"

#include "PublicSide/MirethSRCore.hpp"

namespace mireth::diagnostics {

const char* sessionStateName(MirethSR& library) noexcept {
    const auto& orchestrator = library.core().orchestrator();
    return orchestrator ? orchestrator->state().name() : SessionState{}.name();
}

void recordSignal(MirethSR& library, SessionSignalType signalType, Target target) {
    if (const auto& orchestrator = library.core().orchestrator()) {
        orchestrator->backdoorRecordSignal(signalType, target);
    }
}

}  // namespace mireth::diagnostics
