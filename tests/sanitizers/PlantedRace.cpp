// Two requests count in the same place without a lock. Between them is a server library that was built
// without ThreadSanitizer, as under the receiver.
#include <httplib.h>

#include <chrono>
#include <iostream>
#include <thread>

int main() {
    int requests = 0;
    httplib::Server server;
    server.Get("/", [&](const httplib::Request&, httplib::Response&) {
        const int before = requests;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
        requests = before + 1;
    });
    const int port = server.bind_to_any_port("127.0.0.1");
    std::thread serving([&] { server.listen_after_bind(); });
    const auto ask = [port] {
        httplib::Client client("127.0.0.1", port);
        for (int i = 0; i < 100; ++i) {
            client.Get("/");
        }
    };
    std::thread first(ask);
    std::thread second(ask);
    first.join();
    second.join();
    server.stop();
    serving.join();
    std::cout << requests << " requests counted\n";
}
