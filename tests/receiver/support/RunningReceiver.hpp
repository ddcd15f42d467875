// A receiver in the test's own process: a real store in a temporary directory, a real server on a free port.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <vector>

#include "command/Router.hpp"
#include "http/HttpServer.hpp"
#include "service/Metrics.hpp"
#include "settings/Config.hpp"
#include "sqlite/SqliteStore.hpp"
#include "support/RawClient.hpp"
#include "support/TemporaryDirectory.hpp"
#include "support/Upload.hpp"
#include "video/ProgramExporter.hpp"

namespace mireth::receiver::test {

class RunningReceiver {
  public:
    explicit RunningReceiver(const std::string& configJson = R"({"default":{}})",
                             std::optional<TlsFiles> tls = std::nullopt, AccessRules rules = {});

    int port() const { return server_->port(); }
    HttpServer& server() { return *server_; }
    SqliteStore& store() { return *store_; }
    std::string data() const { return directory_.file("data"); }
    /// Closes the server and the store and opens them anew on the same data.
    void restart();

    RawResponse post(const std::string& target, const std::string& body,
                     const std::string& headers = {}) const;
    RawResponse get(const std::string& target, const std::string& headers = {}) const;
    /// The JSON of an answer with status 200.
    nlohmann::json getJson(const std::string& target) const;
    /// DELETE as the receiver's own page sends it.
    RawResponse remove(const std::string& target, const std::string& headers = {}) const;
    RawResponse put(const Upload& upload) const;
    /// Creates a session and returns its id.
    std::string createSession(const std::string& brandId = "b1", const std::string& projectId = "p1") const;
    RawResponse closeSession(const std::string& id, const std::string& brandId = "b1",
                             const std::string& projectId = "p1") const;

    /// How many video files lie in the data directory.
    std::size_t videoFiles() const;
    SessionContents contents(const std::string& id);
    /// The bytes of the chunk's video.
    std::string video(const Chunk& chunk);

    /// What the operator was told so far; and forgets it.
    std::vector<std::string> takeReports();
    Services services() { return {config_, *store_, environment_, metrics_, *exporter_}; }
    /// Sets the wall clock.
    void setWall(std::int64_t millis) { wall_ = millis; }
    /// Moves the clock for rates.
    void passSeconds(int seconds);

    /// The receiver's wall clock stands at 2023-11-14T22:13:20.123Z.
    static constexpr std::int64_t wallMillis = 1'700'000'000'123;

  private:
    void start();

    const TemporaryDirectory directory_;
    const Config config_;
    const std::optional<TlsFiles> tls_;
    const AccessRules rules_;
    Metrics metrics_;
    std::atomic<std::int64_t> wall_ = wallMillis;
    std::mutex mutex_;
    // Guarded by mutex_.
    std::vector<std::string> reports_;
    std::chrono::steady_clock::time_point now_;

    Environment environment_;
    std::unique_ptr<SqliteStore> store_;
    std::unique_ptr<ProgramExporter> exporter_;
    std::unique_ptr<Router> router_;
    std::unique_ptr<HttpServer> server_;
};

}  // namespace mireth::receiver::test
