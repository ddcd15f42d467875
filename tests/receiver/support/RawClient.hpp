// An HTTP client that sends exactly the bytes it is given. Used to talk to a running receiver.
#pragma once

#include <map>
#include <string>
#include <string_view>

namespace mireth::receiver::test {

struct RawResponse {
    int status = 0;                              ///< 0: the connection ended without a response
    std::map<std::string, std::string> headers;  ///< names in lower case
    std::string body;

    /// The value, or "" when the header is absent.
    std::string header(const std::string& name) const;
};

/// A connected socket on loopback; reads give up after 20 seconds.
class RawConnection {
  public:
    /// `receiveBuffer` is the system's for what is not read yet, in bytes; 0: as large as it likes.
    explicit RawConnection(int port, int receiveBuffer = 0);
    RawConnection(const RawConnection&) = delete;
    RawConnection& operator=(const RawConnection&) = delete;
    ~RawConnection();

    /// False when the server has gone.
    bool send(std::string_view bytes) const;
    /// Reads until the server closes.
    RawResponse receive() const;

  private:
    int fd_;
};

/// One request on a connection of its own.
RawResponse request(int port, const std::string& method, const std::string& target,
                    const std::string& body = {}, const std::string& headers = {});

}  // namespace mireth::receiver::test
