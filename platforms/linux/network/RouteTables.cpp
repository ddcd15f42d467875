// The tables are read from the kernel's messages themselves, with no more of libnl than its sockets and
// attributes: its route objects need registries that libnl takes down when the process ends, which may be
// while the monitor's thread is reading.
#include "platforms/linux/network/RouteTables.hpp"

#include <linux/if.h>
#include <linux/rtnetlink.h>
#include <netlink/attr.h>
#include <netlink/errno.h>
#include <netlink/msg.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <exception>
#include <map>
#include <string_view>
#include <utility>

#include "platforms/linux/network/NetlinkHandles.hpp"

namespace mireth::platform {

namespace {

constexpr int attempts = 5;

template <std::size_t count>
using Attributes = std::array<nlattr*, count>;

/// The attributes after a message's header, by their type; nothing when the message is malformed.
template <class Header, std::size_t count>
std::optional<Attributes<count>> attributesOf(nlmsghdr* message) {
    Attributes<count> result{};
    if (nlmsg_parse(message, sizeof(Header), result.data(), count - 1, nullptr) < 0) {
        return std::nullopt;
    }
    return result;
}

/// The attribute's value; `otherwise` when it is absent or too short.
template <class T>
T valueOf(const nlattr* attribute, T otherwise) {
    if (attribute == nullptr || nla_len(attribute) < static_cast<int>(sizeof(T))) {
        return otherwise;
    }
    nla_memcpy(&otherwise, attribute, sizeof(T));
    return otherwise;
}

struct Link {
    LinkDescription description;
    bool isUsable = false;
};
using Links = std::map<int, Link>;

void addLink(nlmsghdr* message, Links& links) {
    const auto attributes = attributesOf<ifinfomsg, IFLA_MAX + 1>(message);
    if (message->nlmsg_type != RTM_NEWLINK || !attributes) {
        return;
    }
    const auto* header = static_cast<const ifinfomsg*>(nlmsg_data(message));
    const auto state = valueOf<std::uint8_t>((*attributes)[IFLA_OPERSTATE], IF_OPER_UNKNOWN);
    const bool hasCarrier = state == IF_OPER_UP || state == IF_OPER_UNKNOWN;
    Link link;
    link.isUsable =
        (header->ifi_flags & IFF_UP) != 0 && (header->ifi_flags & IFF_LOOPBACK) == 0 && hasCarrier;
    link.description.hardwareType = header->ifi_type;
    if (const nlattr* const name = (*attributes)[IFLA_IFNAME]) {
        const std::string_view bytes(static_cast<const char*>(nla_data(name)),
                                     static_cast<std::size_t>(nla_len(name)));
        link.description.name = bytes.substr(0, bytes.find('\0'));
    }
    links.insert_or_assign(header->ifi_index, std::move(link));
}

/// Collects the path from the default routes.
class PathBuilder {
  public:
    PathBuilder(const Links& links, const LinkClassifier& classify) : links_(links), classify_(classify) {}

    void addRoute(nlmsghdr* message) {
        const auto attributes = attributesOf<rtmsg, RTA_MAX + 1>(message);
        if (message->nlmsg_type != RTM_NEWROUTE || !attributes) {
            return;
        }
        const auto* header = static_cast<const rtmsg*>(nlmsg_data(message));
        const auto table = valueOf<std::uint32_t>((*attributes)[RTA_TABLE], header->rtm_table);
        const bool leadsOut = header->rtm_type == RTN_UNICAST && table != RT_TABLE_LOCAL;
        if (header->rtm_dst_len != 0 || !leadsOut) {
            return;
        }
        if (const nlattr* const hop = (*attributes)[RTA_OIF]) {
            addHop(header->rtm_flags, valueOf<int>(hop, 0));
        }
        if (const nlattr* const hops = (*attributes)[RTA_MULTIPATH]) {
            addHops(hops);
        }
    }

    const NetworkPath& path() const { return path_; }

  private:
    /// The next hops of a route that has several.
    void addHops(const nlattr* hops) {
        auto left = static_cast<std::size_t>(nla_len(hops));
        const auto* bytes = static_cast<const char*>(nla_data(hops));
        while (left >= sizeof(rtnexthop)) {
            const auto* hop = reinterpret_cast<const rtnexthop*>(bytes);
            const std::size_t length = RTNH_ALIGN(hop->rtnh_len);
            if (hop->rtnh_len < sizeof(rtnexthop) || hop->rtnh_len > left) {
                return;
            }
            addHop(hop->rtnh_flags, hop->rtnh_ifindex);
            bytes += length;
            left -= std::min(left, length);
        }
    }

    void addHop(unsigned flags, int interfaceIndex) {
        const auto link = links_.find(interfaceIndex);
        const bool isDead = (flags & (RTNH_F_DEAD | RTNH_F_LINKDOWN)) != 0;
        if (isDead || link == links_.end() || !link->second.isUsable) {
            return;
        }
        path_.satisfied = true;
        switch (classify_(link->second.description)) {
            case LinkKind::wifi:
                path_.usesWifi = true;
                break;
            case LinkKind::cellular:
                path_.usesCellular = true;
                break;
            case LinkKind::wired:
                path_.usesWired = true;
                break;
        }
    }

    const Links& links_;
    const LinkClassifier& classify_;
    NetworkPath path_;
};

/// What receives a table's messages. libnl is C: an exception waits here until it has returned.
template <class Add>
struct Receiver {
    Add add;
    std::exception_ptr failure;

    static int receive(nl_msg* message, void* argument) {
        auto& self = *static_cast<Receiver*>(argument);
        try {
            self.add(nlmsg_hdr(message));
            return NL_OK;
        } catch (...) {
            self.failure = std::current_exception();
            return NL_STOP;
        }
    }
};

/// Asks for one table, of which every entry goes to `add`. False when the kernel cannot be asked, or changed
/// the table in every one of a few attempts.
template <class Header, class Add>
bool readTable(nl_sock* socket, int request, Add add) {
    Receiver<Add> receiver{std::move(add), nullptr};
    if (nl_socket_modify_cb(socket, NL_CB_VALID, NL_CB_CUSTOM, Receiver<Add>::receive, &receiver) != 0) {
        return false;
    }
    int result = -NLE_DUMP_INTR;
    for (int i = 0; i < attempts && result == -NLE_DUMP_INTR; ++i) {
        Header header{};
        result = nl_send_simple(socket, request, NLM_F_DUMP, &header, sizeof(header));
        if (result >= 0) {
            result = nl_recvmsgs_default(socket);
        }
        if (receiver.failure) {
            std::rethrow_exception(receiver.failure);
        }
    }
    return result >= 0;
}

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
    Links links;
    if (!readTable<ifinfomsg>(socket.get(), RTM_GETLINK,
                              [&links](nlmsghdr* message) { addLink(message, links); })) {
        return std::nullopt;
    }
    PathBuilder builder(links, classify);
    if (!readTable<rtmsg>(socket.get(), RTM_GETROUTE,
                          [&builder](nlmsghdr* message) { builder.addRoute(message); })) {
        return std::nullopt;
    }
    return builder.path();
}

}  // namespace mireth::platform
