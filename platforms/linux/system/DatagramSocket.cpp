#include "platforms/linux/system/DatagramSocket.hpp"

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <cstring>

namespace mireth::platform {

FileDescriptor connectDatagramSocket(const std::string& path) {
    sockaddr_un address{};
    if (path.size() >= sizeof(address.sun_path)) {
        return FileDescriptor();
    }
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, path.data(), path.size());
    FileDescriptor result(socket(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    if (!result || connect(result.get(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0) {
        return FileDescriptor();
    }
    return result;
}

bool canSendNow(const FileDescriptor& socket) {
    pollfd state{.fd = socket.get(), .events = POLLOUT, .revents = 0};
    return socket && poll(&state, 1, 0) == 1 && (state.revents & POLLOUT) != 0;
}

void sendOrDrop(const FileDescriptor& socket, std::string_view datagram) {
    if (socket) {
        send(socket.get(), datagram.data(), datagram.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    }
}

}  // namespace mireth::platform
