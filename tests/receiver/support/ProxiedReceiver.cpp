// What the page no longer says is an error, so that page and test cannot drift apart.
#include "support/ProxiedReceiver.hpp"

#include <arpa/inet.h>
#include <signal.h>
#include <sys/socket.h>

#include <filesystem>
#include <iterator>
#include <nlohmann/json.hpp>
#include <sstream>
#include <stdexcept>
#include <thread>

#include "base/UniqueFd.hpp"

namespace mireth::receiver::test {
namespace {

// Where Debian has it; not in everybody's path.
constexpr const char* nginx = "/usr/sbin/nginx";

void require(bool holds, const std::string& what) {
    if (!holds) {
        throw std::runtime_error(what);
    }
}

std::string between(const std::string& text, const std::string& begin, const std::string& end) {
    const auto from = text.find(begin);
    const auto to = from == std::string::npos ? from : text.find(end, from + begin.size());
    require(to != std::string::npos, "docs/operating.md does not say " + begin);
    return text.substr(from + begin.size(), to - from - begin.size());
}

void replace(std::string& text, const std::string& what, const std::string& with) {
    require(text.find(what) != std::string::npos, "docs/operating.md does not say " + what);
    for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at + with.size())) {
        text.replace(at, what.size(), with);
    }
}

// A port that is free now on this address; 0 when the system has no such address.
int freePort(const char* address) {
    sockaddr_storage place{};
    auto* const four = reinterpret_cast<sockaddr_in*>(&place);
    auto* const six = reinterpret_cast<sockaddr_in6*>(&place);
    const bool isFour = ::inet_pton(AF_INET, address, &four->sin_addr) == 1;
    place.ss_family = isFour ? AF_INET : AF_INET6;
    require(isFour || ::inet_pton(AF_INET6, address, &six->sin6_addr) == 1, address);
    const UniqueFd listener(::socket(place.ss_family, SOCK_STREAM | SOCK_CLOEXEC, 0));
    socklen_t size = isFour ? sizeof *four : sizeof *six;
    if (::bind(listener.get(), reinterpret_cast<sockaddr*>(&place), size) != 0 ||
        ::getsockname(listener.get(), reinterpret_cast<sockaddr*>(&place), &size) != 0) {
        return 0;
    }
    return ntohs(isFour ? four->sin_port : six->sin6_port);
}

}  // namespace

bool ProxiedReceiver::hasNginx() {
    return std::filesystem::exists(nginx);
}

ProxiedReceiver::ProxiedReceiver() : page_(fileText(MIRETH_DOCS "/operating.md")) {
    makeCertificate();
    startReceiver();
    startNginx();
}

void ProxiedReceiver::makeCertificate() const {
    const auto made =
        runProgram({"openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256",
                    "-nodes", "-keyout", directory_.file("key.pem"), "-out", directory_.file("fullchain.pem"),
                    "-days", "2", "-subj", "/CN=sr.example.org", "-addext",
                    "subjectAltName=DNS:sr.example.org,DNS:*.sr.example.org,DNS:replay.example.org"});
    require(made.status == 0, made.errors);
}

void ProxiedReceiver::startReceiver() {
    directory_.write("upload-token", uploadToken + "\n");
    directory_.write("viewing-token", viewingToken + "\n");
    directory_.write("config.json", between(between(page_, "## What is kept", "## "), "```json\n", "```"));
    auto line = between(page_, "ExecStart=", "\nLoadCredential");
    replace(line, "\\\n", " ");
    replace(line, "/usr/local/bin/mireth-receiver ", "");
    replace(line, "127.0.0.1:8080", "127.0.0.1:0");
    replace(line, "${CREDENTIALS_DIRECTORY}", directory_.path());
    replace(line, "/var/lib/mireth-receiver", directory_.file("data"));
    std::istringstream words(line + " --print-ready");
    receiver_ = std::make_unique<Program>(
        receiverCommand({std::istream_iterator<std::string>(words), std::istream_iterator<std::string>()}));
    const auto ready = nlohmann::json::parse(receiver_->readLine());
    const std::string listen = ready.at("listen");
    receiverPort_ = std::stoi(listen.substr(listen.rfind(':') + 1));
}

std::string ProxiedReceiver::site() const {
    auto text = between(page_, "```nginx\n", "```");
    const auto port = std::to_string(port_);
    replace(text, "listen 443 ", "listen 127.0.0.1:" + port + " ");
    const auto portOfSix = freePort("::1");
    if (portOfSix == 0) {
        replace(text, "    listen [::]:443 ssl;\n", "");
    } else {
        replace(text, "listen [::]:443 ", "listen [::1]:" + std::to_string(portOfSix) + " ");
    }
    replace(text, "/etc/ssl/mireth-receiver", directory_.path());
    replace(text, "/var/log/nginx", directory_.path());
    replace(text, "http://127.0.0.1:8080", "http://127.0.0.1:" + std::to_string(receiverPort_));
    return text;
}

void ProxiedReceiver::startNginx() {
    port_ = freePort("127.0.0.1");
    std::string temporary;
    for (const std::string kind : {"client_body", "proxy", "fastcgi", "uwsgi", "scgi"}) {
        temporary += kind + "_temp_path " + directory_.file(kind) + ";\n";
    }
    // As Debian's own file has it around the sites, but for its paths and processes.
    directory_.write("nginx.conf", "daemon off;\nmaster_process off;\npid " + directory_.file("nginx.pid") +
                                       ";\nevents {}\nhttp {\nsendfile on;\ntcp_nopush on;\ngzip on;\n" +
                                       "access_log off;\n" + temporary + site() + "}\n");
    nginx_ = std::make_unique<Program>(std::vector<std::string>{nginx, "-p", directory_.path(), "-c",
                                                                directory_.file("nginx.conf"), "-e",
                                                                directory_.file("nginx.log")});
    for (int i = 0; i < 200; ++i) {
        if (client("sr.example.org")->Get("/healthz")) {
            return;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    throw std::runtime_error("nginx does not answer: " + logs());
}

std::unique_ptr<httplib::SSLClient> ProxiedReceiver::client(const std::string& name) const {
    auto client = std::make_unique<httplib::SSLClient>(name, port_);
    client->set_hostname_addr_map({{name, "127.0.0.1"}});
    client->set_ca_cert_path(directory_.file("fullchain.pem"));
    client->enable_server_certificate_verification(true);
    client->set_read_timeout(30);
    return client;
}

std::string ProxiedReceiver::origin(const std::string& name) const {
    return "https://" + name + ":" + std::to_string(port_);
}

std::string ProxiedReceiver::logs() const {
    std::string all;
    for (const auto& entry : std::filesystem::directory_iterator(directory_.path())) {
        all += entry.path().extension() == ".log" ? fileText(entry.path()) : "";
    }
    return all;
}

}  // namespace mireth::receiver::test
