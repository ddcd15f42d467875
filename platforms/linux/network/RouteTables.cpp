#include "platforms/linux/network/RouteTables.hpp"

#include <linux/if.h>
#include <linux/rtnetlink.h>
#include <netlink/errno.h>
#include <netlink/route/nexthop.h>
#include <netlink/route/route.h>
#include <sys/socket.h>

#include "platforms/linux/network/NetlinkHandles.hpp"

namespace mireth::platform {

namespace {

constexpr int attempts = 5;

/// Asks for one kind of table with `allocate`; null when that fails.
template <class Allocate>
NetlinkCache readTable(nl_sock* socket, Allocate allocate) {
    for (int i = 0; i < attempts; ++i) {
        nl_cache* cache = nullptr;
        const int result = allocate(socket, &cache);
        if (result == 0) {
            return NetlinkCache(cache);
        }
        if (result != -NLE_DUMP_INTR) {
            break;
        }
    }
    return nullptr;
}

bool isUsable(rtnl_link* link) {
    const unsigned flags = rtnl_link_get_flags(link);
    const int state = rtnl_link_get_operstate(link);
    const bool hasCarrier = state == IF_OPER_UP || state == IF_OPER_UNKNOWN;
    return (flags & IFF_UP) != 0 && (flags & IFF_LOOPBACK) == 0 && hasCarrier;
}

/// Collects the path from the default routes.
struct PathBuilder {
    nl_cache* links;
    const LinkClassifier& classify;
    NetworkPath path;

    void addRoute(rtnl_route* route) {
        nl_addr* const destination = rtnl_route_get_dst(route);
        const bool isDefault = destination == nullptr || nl_addr_get_prefixlen(destination) == 0;
        const bool leadsOut =
            rtnl_route_get_type(route) == RTN_UNICAST && rtnl_route_get_table(route) != RT_TABLE_LOCAL;
        if (!isDefault || !leadsOut) {
            return;
        }
        const auto addHop = [](rtnl_nexthop* hop, void* self) {
            static_cast<PathBuilder*>(self)->addHop(hop);
        };
        rtnl_route_foreach_nexthop(route, addHop, this);
    }

    void addHop(rtnl_nexthop* hop) {
        const bool isDead = (rtnl_route_nh_get_flags(hop) & (RTNH_F_DEAD | RTNH_F_LINKDOWN)) != 0;
        const NetlinkLink link(rtnl_link_get(links, rtnl_route_nh_get_ifindex(hop)));
        if (isDead || !link || !isUsable(link.get())) {
            return;
        }
        path.satisfied = true;
        switch (classify({rtnl_link_get_name(link.get()), rtnl_link_get_arptype(link.get())})) {
            case LinkKind::wifi:
                path.usesWifi = true;
                break;
            case LinkKind::cellular:
                path.usesCellular = true;
                break;
            case LinkKind::wired:
                path.usesWired = true;
                break;
        }
    }
};

}  // namespace

NetlinkSocket connectRouteSocket() {
    NetlinkSocket socket(nl_socket_alloc());
    if (!socket || nl_connect(socket.get(), NETLINK_ROUTE) != 0) {
        return nullptr;
    }
    return socket;
}

std::optional<NetworkPath> readNetworkPath(const LinkClassifier& classify) {
    const NetlinkSocket socket = connectRouteSocket();
    if (!socket) {
        return std::nullopt;
    }
    const NetlinkCache links = readTable(socket.get(), [](nl_sock* from, nl_cache** cache) {
        return rtnl_link_alloc_cache(from, AF_UNSPEC, cache);
    });
    const NetlinkCache routes = readTable(socket.get(), [](nl_sock* from, nl_cache** cache) {
        return rtnl_route_alloc_cache(from, AF_UNSPEC, 0, cache);
    });
    if (!links || !routes) {
        return std::nullopt;
    }
    PathBuilder builder{links.get(), classify, {}};
    const auto addRoute = [](nl_object* object, void* self) {
        static_cast<PathBuilder*>(self)->addRoute(reinterpret_cast<rtnl_route*>(object));
    };
    nl_cache_foreach(routes.get(), addRoute, &builder);
    return builder.path;
}

}  // namespace mireth::platform
