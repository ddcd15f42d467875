// A local datagram socket that never waits. The two system logs are reached over such sockets.
#pragma once

#include <string>
#include <string_view>

#include "platforms/linux/system/FileDescriptor.hpp"

namespace mireth::platform {

/// A non-blocking socket connected to the one bound at `path`; none when nobody listens there.
FileDescriptor connectDatagramSocket(const std::string& path);

/// True when the receiver's queue has room.
bool canSendNow(const FileDescriptor& socket);

/// Sends one datagram; drops it when that would mean waiting.
void sendOrDrop(const FileDescriptor& socket, std::string_view datagram);

}  // namespace mireth::platform
