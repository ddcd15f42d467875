// Watches the network path of a Linux device.
#pragma once

#include <memory>

#include "Base/GuardedRun.hpp"
#include "MirethVex/Platform/PathMonitor.hpp"
#include "platforms/linux/network/LinkKind.hpp"

namespace mireth::platform {

/// "Satisfied" means here: there is a default route, IPv4 or IPv6, that leads somewhere (not unreachable,
/// blackhole or prohibit), in any table but the local one, over an interface other than loopback that is up
/// and has a carrier (operational state up or unknown). The path uses the interfaces of all such routes,
/// whatever their metrics.
///
/// It does not try whether the internet answers: a captive portal, a router without an uplink or a policy
/// rule that never looks at the route's table still count as satisfied. Networks reached without a default
/// route, and tunnels made of more specific routes, do not count.
///
/// Changes are reported after the kernel has been quiet for a moment (50 ms, one second at most), so a path
/// that flickers in between is not seen. A system that stops being watchable reports an unsatisfied path and
/// nothing after it.
class NetlinkPathMonitor final : public PathMonitor {
  public:
    explicit NetlinkPathMonitor(LinkClassifier classify = sysfsLinkClassifier(),
                                EscapedErrorHandler onEscapedError = {});
    NetlinkPathMonitor(const NetlinkPathMonitor&) = delete;
    NetlinkPathMonitor& operator=(const NetlinkPathMonitor&) = delete;
    ~NetlinkPathMonitor() override;

    /// A system without a thread to spare reports nothing.
    void start(UpdateHandler handler) override;
    void cancel() override;

  private:
    class Watcher;
    std::shared_ptr<Watcher> watcher_;
};

}  // namespace mireth::platform
