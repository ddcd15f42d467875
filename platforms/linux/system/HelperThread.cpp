#include "platforms/linux/system/HelperThread.hpp"

#include <pthread.h>
#include <signal.h>

#include <utility>

namespace mireth::platform {

namespace {

sigset_t hostSignals() {
    sigset_t set;
    sigfillset(&set);
    for (const int fault : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGTRAP, SIGABRT, SIGSYS}) {
        sigdelset(&set, fault);
    }
    return set;
}

/// Blocks the host's signals on this thread for as long as it lives. A new thread inherits the mask, so no
/// signal can reach it before it runs.
class SignalsBlocked {
  public:
    SignalsBlocked() {
        const sigset_t blocked = hostSignals();
        pthread_sigmask(SIG_BLOCK, &blocked, &before_);
    }
    SignalsBlocked(const SignalsBlocked&) = delete;
    SignalsBlocked& operator=(const SignalsBlocked&) = delete;
    ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

  private:
    sigset_t before_{};
};

}  // namespace

std::thread startHelperThread(const char* name, Work body) {
    const SignalsBlocked blocked;
    std::thread thread(std::move(body));
    pthread_setname_np(thread.native_handle(), name);
    return thread;
}

}  // namespace mireth::platform
