#include "platforms/linux/network/CurlWorker.hpp"

#include <algorithm>
#include <cstring>
#include <system_error>
#include <utility>

#include "platforms/linux/network/CertificateAuthorities.hpp"
#include "platforms/linux/system/HelperThread.hpp"

namespace mireth::platform {

namespace {

constexpr long keptConnections = 8;

CurlSettings makeSettings(const CurlHttpClientOptions& options) {
    CurlSettings settings;
    settings.allowInsecureHttp = options.allowInsecureHttp;
    if (options.extraCaFile) {
        auto authorities = readAuthorities(*options.extraCaFile);
        if (authorities) {
            settings.authorities = std::move(*authorities);
        } else {
            settings.refusal = std::move(authorities.error());
        }
    }
    return settings;
}

/// Sets libcurl up, once a process. Never undone: the host may use libcurl too.
bool isLibcurlReady() {
    static const CURLcode initialized = curl_global_init(CURL_GLOBAL_DEFAULT);
    return initialized == CURLE_OK;
}

ExitGate& openExitGate() {
    (void)isLibcurlReady();
    return ExitGate::ofThisProcess();
}

std::unique_ptr<CURLM, CurlMultiDeleter> makeMulti() {
    std::unique_ptr<CURLM, CurlMultiDeleter> multi(isLibcurlReady() ? curl_multi_init() : nullptr);
    // Without descriptors for the wake-up, requests would lie for a minute before the thread sees them.
    if (!multi || curl_multi_wakeup(multi.get()) != CURLM_OK) {
        throw std::system_error(std::make_error_code(std::errc::too_many_files_open), "libcurl");
    }
    curl_multi_setopt(multi.get(), CURLMOPT_MAXCONNECTS, keptConnections);
    return multi;
}

/// What `make` gives, or what is left to say when there is no memory even for that.
template <class Make>
HttpResult resultOf(Make&& make) noexcept {
    try {
        return std::forward<Make>(make)();
    } catch (...) {
        return std::unexpected(TransportError{"no memory"});
    }
}

}  // namespace

CurlHttpClient::Worker::Worker(CurlHttpClientOptions options)
    : settings_(makeSettings(options)),
      onEscapedError_(std::move(options.onEscapedError)),
      exitGate_(openExitGate()),
      multi_(makeMulti()) {}

CurlHttpClient::Worker::~Worker() {
    const auto pass = exitGate_.enter();
    if (pass.owns_lock()) {
        multi_.reset();
        return;
    }
    // What libcurl would need to give it back is gone; so will be the process.
    exitGate_.leaveBehind(std::make_shared<decltype(running_)>(std::move(running_)));
    exitGate_.leaveBehind(std::make_shared<decltype(multi_)>(std::move(multi_)));
}

void CurlHttpClient::Worker::start() {
    thread_ = startHelperThread("mireth-http", [self = shared_from_this()] { self->loop(); });
}

void CurlHttpClient::Worker::stop() {
    {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
        curl_multi_wakeup(multi_.get());
        stopped_.notify_all();
    }
    if (thread_.get_id() == std::this_thread::get_id()) {
        thread_.detach();
    } else {
        thread_.join();
    }
}

AnyCancellable CurlHttpClient::Worker::send(HttpRequest request, Completion completion) {
    auto pending = std::make_shared<PendingCompletion>(std::move(completion));
    Id id = 0;
    {
        const std::lock_guard lock(mutex_);
        id = ++lastId_;
        orders_.push_back({id, std::move(request), pending});
        curl_multi_wakeup(multi_.get());
    }
    return AnyCancellable([worker = weak_from_this(), pending = std::move(pending), id] {
        const Completion dropped = pending->take();
        const auto strong = worker.lock();
        if (dropped && strong) {
            strong->cancel(id);
        }
    });
}

void CurlHttpClient::Worker::cancel(Id id) {
    const std::lock_guard lock(mutex_);
    if (!stopping_) {
        cancelled_.push_back(id);
        curl_multi_wakeup(multi_.get());
    }
}

bool CurlHttpClient::Worker::isStopping() {
    const std::lock_guard lock(mutex_);
    return stopping_;
}

void CurlHttpClient::Worker::loop() noexcept {
    while (!isStopping() && step()) {
        curl_multi_poll(multi_.get(), nullptr, 0, millisecondsToWait(), nullptr);
    }
    if (const auto pass = exitGate_.enter(); pass.owns_lock()) {
        dropAll();
        return;
    }
    // Not over yet: a thread that ends gives back what OpenSSL holds for it, which the process is giving back
    // at this moment.
    waitForStop();
}

void CurlHttpClient::Worker::waitForStop() {
    std::unique_lock lock(mutex_);
    stopped_.wait(lock, [this] { return stopping_; });
}

bool CurlHttpClient::Worker::step() {
    const auto pass = exitGate_.enter();
    if (!pass.owns_lock()) {
        return false;
    }
    takeOrders();
    int active = 0;
    curl_multi_perform(multi_.get(), &active);
    takeFinished();
    endIdle();
    return true;
}

void CurlHttpClient::Worker::dropAll() {
    std::vector<Order> orders;
    {
        const std::lock_guard lock(mutex_);
        orders.swap(orders_);
    }
    for (const Order& order : orders) {
        order.completion->take();
    }
    for (const auto& [id, running] : running_) {
        curl_multi_remove_handle(multi_.get(), running.transfer->handle());
        running.completion->take();
    }
    running_.clear();
}

void CurlHttpClient::Worker::takeOrders() {
    std::vector<Order> orders;
    std::vector<Id> cancelled;
    {
        const std::lock_guard lock(mutex_);
        orders.swap(orders_);
        cancelled.swap(cancelled_);
    }
    for (Order& order : orders) {
        begin(std::move(order));
    }
    for (const Id id : cancelled) {
        const auto found = running_.find(id);
        if (found != running_.end()) {
            curl_multi_remove_handle(multi_.get(), found->second.transfer->handle());
            running_.erase(found);
        }
    }
}

void CurlHttpClient::Worker::begin(Order order) noexcept {
    try {
        auto transfer = std::make_unique<CurlTransfer>(std::move(order.request), settings_);
        if (!transfer->refusal().empty()) {
            complete(*order.completion, transfer->failure(transfer->refusal()));
            return;
        }
        CURL* const handle = transfer->handle();
        const auto added = running_.emplace(order.id, Running{std::move(transfer), order.completion}).first;
        if (const CURLMcode code = curl_multi_add_handle(multi_.get(), handle); code != CURLM_OK) {
            finish(added,
                   resultOf([&] { return added->second.transfer->failure(curl_multi_strerror(code)); }));
        }
    } catch (...) {
        complete(*order.completion, std::unexpected(TransportError{"no memory"}));
    }
}

void CurlHttpClient::Worker::takeFinished() {
    int left = 0;
    while (const CURLMsg* message = curl_multi_info_read(multi_.get(), &left)) {
        if (message->msg != CURLMSG_DONE) {
            continue;
        }
        const CURLcode code = message->data.result;
        const auto ended = std::ranges::find_if(running_, [handle = message->easy_handle](const auto& entry) {
            return entry.second.transfer->handle() == handle;
        });
        if (ended != running_.end()) {
            finish(ended, resultOf([&] { return ended->second.transfer->result(code); }));
        }
    }
}

void CurlHttpClient::Worker::endIdle() {
    const auto now = std::chrono::steady_clock::now();
    for (auto& [id, running] : running_) {
        running.transfer->noteActivity(now);
    }
    for (auto next = running_.begin(); next != running_.end();) {
        const auto current = next++;
        if (current->second.transfer->deadline() <= now) {
            finish(current, resultOf([&] { return current->second.transfer->timedOut(); }));
        }
    }
}

int CurlHttpClient::Worker::millisecondsToWait() const {
    std::chrono::milliseconds wait = std::chrono::minutes(1);
    const auto now = std::chrono::steady_clock::now();
    for (const auto& [id, running] : running_) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(running.transfer->deadline() - now);
        wait = std::clamp(left, std::chrono::milliseconds(0), wait);
    }
    return static_cast<int>(wait.count());
}

void CurlHttpClient::Worker::finish(Transfers::iterator transfer, HttpResult result) {
    const Running ended = std::move(transfer->second);
    running_.erase(transfer);
    curl_multi_remove_handle(multi_.get(), ended.transfer->handle());
    complete(*ended.completion, std::move(result));
}

void CurlHttpClient::Worker::complete(PendingCompletion& completion, HttpResult result) const noexcept {
    if (auto function = completion.take()) {
        runGuarded("an HTTP completion", [&] { function(std::move(result)); }, onEscapedError_);
    }
}

}  // namespace mireth::platform
