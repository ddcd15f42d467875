#include "MirethVex/Linux/PlainApplication.hpp"

#include <utility>

#include "Base/GuardedRun.hpp"

namespace mireth::platform {

void PlainApplication::moveToBackground() {
    didEnterBackground_.send({});
}

AnyCancellable PlainApplication::observeDidEnterBackground(std::function<void()> observer) {
    return didEnterBackground_.sink([observer = std::move(observer)](const std::monostate&) {
        runGuarded("an observer of the move to the background", observer);
    });
}

AnyCancellable PlainApplication::interceptViewDidAppear(AppearanceInterceptor interceptor) {
    return appearance_.interceptViewDidAppear(std::move(interceptor));
}

AnyCancellable PlainApplication::interceptViewDidDisappear(AppearanceInterceptor interceptor) {
    return appearance_.interceptViewDidDisappear(std::move(interceptor));
}

}  // namespace mireth::platform
