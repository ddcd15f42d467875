// Counters behind one lock, and their text.
#include "service/Metrics.hpp"

#include <algorithm>
#include <sstream>

namespace mireth::receiver {
namespace {

constexpr const char* prefix = "mireth_receiver_";

void describe(std::ostream& out, const char* name, const char* type, const char* help) {
    out << "# HELP " << prefix << name << ' ' << help << "\n# TYPE " << prefix << name << ' ' << type << '\n';
}

template <typename Number>
void single(std::ostream& out, const char* name, const char* type, const char* help, Number value) {
    describe(out, name, type, help);
    out << prefix << name << ' ' << value << '\n';
}

}  // namespace

void Metrics::count(const Answered& request) {
    const std::lock_guard lock(mutex_);
    ++requests_[{std::string(request.endpoint), request.status}];
    received_ += request.received;
    sent_ += request.sent;
    errors_ += request.status >= 500 ? 1 : 0;
    auto& latency = latencies_[std::string(request.endpoint)];
    const double seconds = std::chrono::duration<double>(request.took).count();
    const auto bucket = std::ranges::lower_bound(bounds, seconds);
    if (bucket != bounds.end()) {
        ++latency.buckets[static_cast<std::size_t>(bucket - bounds.begin())];
    }
    ++latency.count;
    latency.sum += seconds;
}

void Metrics::countChunk(std::string_view outcome) {
    const std::lock_guard lock(mutex_);
    ++chunks_[std::string(outcome)];
}

void Metrics::countTurnedAway() {
    const std::lock_guard lock(mutex_);
    ++turnedAway_;
}

void Metrics::countShed() {
    const std::lock_guard lock(mutex_);
    ++shed_;
}

void Metrics::countExpired(std::int64_t sessions) {
    const std::lock_guard lock(mutex_);
    expired_ += static_cast<std::uint64_t>(sessions);
}

std::string Metrics::text(const StoreStats& store) const {
    std::ostringstream out;
    out.precision(12);
    const std::lock_guard lock(mutex_);
    describe(out, "requests_total", "counter", "Requests answered, by endpoint and status.");
    for (const auto& [key, value] : requests_) {
        out << prefix << "requests_total{endpoint=\"" << key.first << "\",status=\"" << key.second << "\"} "
            << value << '\n';
    }
    describe(out, "request_seconds", "histogram",
             "From the head of a request until its answer was ready, its body's time on the way included.");
    for (const auto& [endpoint, latency] : latencies_) {
        const auto label = "{endpoint=\"" + endpoint + "\"";
        std::uint64_t below = 0;
        for (std::size_t i = 0; i < bounds.size(); ++i) {
            below += latency.buckets[i];
            out << prefix << "request_seconds_bucket" << label << ",le=\"" << bounds[i] << "\"} " << below
                << '\n';
        }
        out << prefix << "request_seconds_bucket" << label << ",le=\"+Inf\"} " << latency.count << '\n';
        out << prefix << "request_seconds_sum" << label << "} " << latency.sum << '\n';
        out << prefix << "request_seconds_count" << label << "} " << latency.count << '\n';
    }
    describe(out, "chunks_total", "counter", "Chunk uploads, by what became of them.");
    for (const auto& [outcome, value] : chunks_) {
        out << prefix << "chunks_total{outcome=\"" << outcome << "\"} " << value << '\n';
    }
    const auto throttled = chunks_.find("throttled");
    single(out, "throttled_total", "counter", "Chunk uploads answered THROTTLED.",
           throttled == chunks_.end() ? 0 : throttled->second);
    single(out, "received_bytes_total", "counter", "Bytes of request bodies.", received_);
    single(out, "sent_bytes_total", "counter", "Bytes of answer bodies.", sent_);
    single(out, "errors_total", "counter", "Requests that the receiver failed to serve.", errors_);
    single(out, "connections_refused_total", "counter", "Connections turned away as all were taken.",
           turnedAway_);
    single(out, "connections_dropped_total", "counter", "Slow connections that gave way to others.", shed_);
    single(out, "sessions_expired_total", "counter", "Sessions removed by the rules of retention.", expired_);
    single(out, "sessions", "gauge", "Sessions kept.", store.sessions);
    single(out, "chunks", "gauge", "Chunks kept.", store.chunks);
    single(out, "video_bytes", "gauge", "Bytes of videos on disk.", store.videoBytes);
    single(out, "database_bytes", "gauge", "Bytes of the database on disk.", store.databaseBytes);
    single(out, "disk_free_bytes", "gauge", "Bytes free on the file system of the data.", store.freeBytes);
    return out.str();
}

}  // namespace mireth::receiver
