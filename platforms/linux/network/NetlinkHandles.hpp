// Owners of libnl's objects. Used by the network path's .cpp files.
#pragma once

#include <netlink/cache.h>
#include <netlink/route/link.h>
#include <netlink/socket.h>

#include <memory>

namespace mireth::platform {

struct NetlinkSocketDeleter {
    void operator()(nl_sock* socket) const { nl_socket_free(socket); }
};
using NetlinkSocket = std::unique_ptr<nl_sock, NetlinkSocketDeleter>;

struct NetlinkCacheDeleter {
    void operator()(nl_cache* cache) const { nl_cache_free(cache); }
};
using NetlinkCache = std::unique_ptr<nl_cache, NetlinkCacheDeleter>;

struct NetlinkLinkDeleter {
    void operator()(rtnl_link* link) const { rtnl_link_put(link); }
};
using NetlinkLink = std::unique_ptr<rtnl_link, NetlinkLinkDeleter>;

/// A connected routing socket; null when there is none to be had.
NetlinkSocket connectRouteSocket();

}  // namespace mireth::platform
