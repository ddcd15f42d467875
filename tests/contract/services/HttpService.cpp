#include "HttpService.hpp"

#include <httplib.h>

#include <thread>

namespace mireth::test {

struct HttpService::Impl {
    httplib::Server server;
    HttpClientHarness::Service service;
    int port = 0;
    std::thread thread;
};

HttpService::HttpService() : impl_(std::make_unique<Impl>()) {
    const auto handle = [impl = impl_.get()](const httplib::Request& request, httplib::Response& response) {
        HttpClientHarness::Seen seen{request.method, request.target, {}, request.body};
        for (const auto& [name, value] : request.headers) {
            seen.headers.insert_or_assign(name, value);
        }
        const auto answer = impl->service(seen);
        response.status = answer.status;
        for (const auto& [name, value] : answer.headers) {
            response.set_header(name, value);
        }
        response.set_content(answer.body, "text/plain");
    };
    auto& server = impl_->server;
    server.Get(".*", handle).Post(".*", handle).Put(".*", handle).Patch(".*", handle);
    server.Delete(".*", handle).Options(".*", handle);
    impl_->port = server.bind_to_any_port("127.0.0.1");
    impl_->thread = std::thread([&server] { server.listen_after_bind(); });
    while (!server.is_running()) {
        std::this_thread::yield();
    }
}

HttpService::~HttpService() {
    impl_->server.stop();
    impl_->thread.join();
}

std::string HttpService::origin() const {
    return "http://127.0.0.1:" + std::to_string(impl_->port);
}

void HttpService::setService(HttpClientHarness::Service service) {
    impl_->service = std::move(service);
}

}  // namespace mireth::test
