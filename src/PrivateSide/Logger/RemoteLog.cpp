#include "PrivateSide/Logger/RemoteLog.hpp"

#include <nlohmann/json.hpp>

#include "PrivateSide/Configuration/UnknownValue.hpp"

namespace mireth {

namespace {

constexpr const char* clientSource = "vex-mobile";

std::shared_ptr<const LogMessagesSampler> makeSampler(const std::shared_ptr<platform::RandomSource>& random) {
    return std::make_shared<const LogMessagesSampler>(LogMessagesSampler::uniform(random));
}

}  // namespace

RemoteLog::RemoteLog(MirethLog& log, Environment environment)
    : environment_(std::move(environment)),
      memoryUse_(log, "PrivateSide/Logger/RemoteLog"),
      logSampler_(makeSampler(environment_.random)) {}

void RemoteLog::askServices() {
    // Before the lock: what is asked is the host's, and may log.
    Entries entries = buildStaticMetadata(environment_);
    const std::lock_guard lock(mutex_);
    staticMetadata_ = std::move(entries);
}

void RemoteLog::initialize(std::shared_ptr<MApiClient> apiClient,
                           std::shared_ptr<NetworkStateProvider> networkState, ProjectData projectData) {
    const std::lock_guard lock(mutex_);
    // Swapped, so that what was replaced is destroyed after the lock is gone.
    apiClient_.swap(apiClient);
    networkState_.swap(networkState);
    projectData_ = std::move(projectData);
}

void RemoteLog::setSessionData(SessionData sessionData) {
    const std::lock_guard lock(mutex_);
    sessionData_ = std::move(sessionData);
}

void RemoteLog::post(LogLevel level, LogTag tag, const std::string& message,
                     const AdditionalInfo& additionalInfo, bool ignoreSampling) {
    std::shared_ptr<MApiClient> apiClient;
    std::shared_ptr<const LogMessagesSampler> sampler;
    {
        const std::lock_guard lock(mutex_);
        apiClient = apiClient_;
        sampler = logSampler_;
    }
    if (!ignoreSampling && !sampler->check()) {
        return;
    }
    std::string text = generateLog(message, tag, additionalInfo);
    if (apiClient) {
        spawn(environment_.background,
              send(std::move(apiClient), std::move(text), std::string(rawValue(level))));
    }
}

void RemoteLog::resetState() {
    std::shared_ptr<MApiClient> apiClient;
    std::shared_ptr<NetworkStateProvider> networkState;
    const std::lock_guard lock(mutex_);
    apiClient_.swap(apiClient);
    networkState_.swap(networkState);
    logSampler_ = makeSampler(environment_.random);
}

void RemoteLog::mockApiClient(std::shared_ptr<MApiClient> api) {
    const std::lock_guard lock(mutex_);
    apiClient_.swap(api);
}

void RemoteLog::mockLogSampler(std::shared_ptr<const LogMessagesSampler> logSampler) {
    const std::lock_guard lock(mutex_);
    logSampler_ = std::move(logSampler);
}

std::string RemoteLog::generateLog(const std::string& message, LogTag tag,
                                   const AdditionalInfo& additionalInfo) const {
    try {
        Json line = Json::object();
        line["logMessage"] = message;
        line["logTag"] = std::string(key(tag));
        for (const auto& [name, value] : buildMetadata()) {
            if (!line.contains(name)) {
                line[name] = value;
            }
        }
        for (const auto& [name, value] : additionalInfo) {
            line[name] = value;
        }
        return line.dump(-1, ' ', false, Json::error_handler_t::replace);
    } catch (const std::exception&) {
        return "Failed to serialize log";
    }
}

RemoteLog::Entries RemoteLog::buildStaticMetadata(const Environment& environment) {
    const auto& client = *environment.clientDetails;
    Entries entries;
    entries.emplace_back("clientSource", clientSource);
    entries.emplace_back("clientType", rawValue(client.getClientType()));
    entries.emplace_back(
        "clientVexVersion",
        environment.information->string(platform::information_keys::vexVersion).value_or(unknownValue));
    entries.emplace_back("deviceOsVersion", environment.device->systemVersion());
    entries.emplace_back("deviceName", environment.device->name());
    entries.emplace_back("deviceCodename", environment.device->machine());
    if (auto version = client.getClientReactNativeVersion()) {
        entries.emplace_back("clientReactNativeVersion", std::move(*version));
    }
    if (auto version = client.getClientVexReactNativeVersion()) {
        entries.emplace_back("clientVexReactNativeVersion", std::move(*version));
    }
    return entries;
}

RemoteLog::Entries RemoteLog::buildMetadata() const {
    const std::lock_guard lock(mutex_);
    Entries entries = staticMetadata_;
    if (networkState_) {
        entries.emplace_back("networkType", rawValue(networkState_->getConnectionType()));
    }
    if (projectData_) {
        entries.emplace_back("projectId", projectData_->projectId);
    }
    if (sessionData_) {
        entries.emplace_back("brandDc", sessionData_->brandDc);
        entries.emplace_back("sessionId", sessionData_->sessionId);
    }
    return entries;
}

Task<void> RemoteLog::send(std::shared_ptr<MApiClient> apiClient, std::string text, std::string level) {
    (void)co_await apiClient->postLog(std::move(text), std::move(level));
}

}  // namespace mireth
