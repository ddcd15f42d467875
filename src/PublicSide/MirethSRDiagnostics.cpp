#include "PublicSide/MirethSRDiagnostics.hpp"

#include "PublicSide/MirethSRAccess.hpp"
#include "PublicSide/MirethSRCore.hpp"

namespace mireth::diagnostics {

const char* sessionStateName(MirethSR& library) noexcept {
    const auto orchestrator = MirethSRAccess::core(library).orchestrator();
    return orchestrator ? orchestrator->state().name() : SessionState{}.name();
}

void recordSignal(MirethSR& library, SessionSignalType signalType, Target target) {
    if (const auto orchestrator = MirethSRAccess::core(library).orchestrator()) {
        orchestrator->backdoorRecordSignal(signalType, target);
    }
}

}  // namespace mireth::diagnostics
