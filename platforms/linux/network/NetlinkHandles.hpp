// Owners of libnl's objects. Used by the network path's .cpp files.
#pragma once

#include <netlink/socket.h>

#include <memory>

namespace mireth::platform {

struct NetlinkSocketDeleter {
    void operator()(nl_sock* socket) const { nl_socket_free(socket); }
};
using NetlinkSocket = std::unique_ptr<nl_sock, NetlinkSocketDeleter>;

/// A connected routing socket; null when there is none to be had.
NetlinkSocket connectRouteSocket();

}  // namespace mireth::platform
