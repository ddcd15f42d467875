// Whatever the method and the path, a request goes to the handler; httplib's own answers get our form.
#include "http/RequestProcessor.hpp"

#include <sys/socket.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "base/UniqueFd.hpp"
#include "http/AnswerHeaders.hpp"
#include "http/ConnectionStream.hpp"
#include "http/HttplibAdapter.hpp"

namespace mireth::receiver {
namespace {

constexpr auto json = "application/json";
constexpr auto errorBody = R"({"status":"ERROR"})";
constexpr int backlog = 256;

}  // namespace

RequestProcessor::RequestProcessor(const Limits& limits, RequestHandler& handler,
                                   const Environment& environment)
    : limits_(limits), handler_(handler), environment_(environment) {
    // Not httplib's SO_REUSEPORT: with it a second receiver would share the port silently.
    set_socket_options([](socket_t socket) {
        const int yes = 1;
        ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
    });
    set_payload_max_length(static_cast<std::size_t>(limits_.requestBytes));
    routeAll();
    answerFailures();
    set_post_routing_handler([this](const httplib::Request& request, httplib::Response& response) {
        addHeaders(request, response, environment_);
    });
}

bool RequestProcessor::bind(const ListenOptions& options) {
    port_ = options.port;
    if (options.port == 0) {
        port_ = bind_to_any_port(options.host);
    } else if (!bind_to_port(options.host, options.port)) {
        return false;
    }
    return port_ > 0 && ::listen(svr_sock_, backlog) == 0;
}

void RequestProcessor::closeSocket() {
    const UniqueFd noLongerNeeded(svr_sock_.exchange(INVALID_SOCKET));
}

void RequestProcessor::routeAll() {
    const auto bodyless = [this](const httplib::Request& request, httplib::Response& response) {
        dispatch(handler_, request, nullptr, response);
    };
    const auto bodied = [this](const httplib::Request& request, httplib::Response& response,
                               const httplib::ContentReader& reader) {
        // Without a length httplib would take everything up to the connection's end for the body.
        const bool framed = request.has_header("Content-Length") || request.has_header("Transfer-Encoding");
        dispatch(handler_, request, framed ? &reader : nullptr, response);
    };
    // Not ".*": a dot matches no line end, and a decoded path may hold one.
    constexpr auto anything = "[\\s\\S]*";
    Get(anything, bodyless);
    Options(anything, bodyless);
    Post(anything, bodied);
    Put(anything, bodied);
    Patch(anything, bodied);
    Delete(anything, bodied);
}

void RequestProcessor::answerFailures() {
    set_error_handler([](const httplib::Request&, httplib::Response& response) {
        if (response.body.empty()) {
            response.set_content(errorBody, json);
        }
    });
    set_exception_handler(
        [this](const httplib::Request&, httplib::Response& response, const std::exception_ptr& error) {
            report(error);
            response.status = 500;
            response.set_content(errorBody, json);
        });
}

void RequestProcessor::answer(Transport& transport, ConnectionTimer& timer) {
    // Room for the framing of a chunked body, whose lengths httplib reads by itself.
    constexpr std::uint64_t framing = std::uint64_t{1} << 20U;
    ConnectionStream stream(transport, timer, limits_.requestBytes + framing);
    const auto head = stream.readHead();
    if (head == ConnectionStream::Head::absent) {
        return;
    }
    if (head == ConnectionStream::Head::oversized) {
        handler_.headTooLong();
        transport.write(bareResponse("431 Request Header Fields Too Large", environment_));
    } else {
        bool closed = false;
        process_request(stream, true, closed, hideFromHttplib);
    }
    stream.linger();
}

void RequestProcessor::report(const std::exception_ptr& error) const {
    try {
        std::rethrow_exception(error);
    } catch (const std::exception& known) {
        environment_.report(std::string("a request failed: ") + known.what());
    } catch (...) {
        environment_.report("a request failed for an unknown reason");
    }
}

}  // namespace mireth::receiver
