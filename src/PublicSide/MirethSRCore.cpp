#include "PublicSide/MirethSRCore.hpp"

#include <boost/asio/co_spawn.hpp>
#include <utility>

#include "Platform/Async/QueueExecutors.hpp"

namespace mireth {

namespace {

RemoteLog::Environment remoteLogEnvironment(const platform::PlatformServices& services,
                                            const std::shared_ptr<const ClientDetailsProvider>& clientDetails,
                                            const Executor& background) {
    RemoteLog::Environment environment;
    environment.information = services.information;
    environment.device = services.device;
    environment.clientDetails = clientDetails;
    environment.random = services.random;
    environment.background = background;
    return environment;
}

CurrentTimeProvider wallClock(const std::shared_ptr<platform::Clock>& clock) {
    return [clock] { return clock->now(); };
}

}  // namespace

MirethSRCore::MirethSRCore(MirethLog& log, platform::PlatformServices services,
                           OrchestratorClass orchestratorClass)
    : log_(log),
      services_(std::move(services)),
      mainExecutor_(makeMainExecutor(services_.mainQueue)),
      backgroundExecutor_(makeBackgroundExecutor(services_.background)),
      fileExecutor_(makeSerialExecutor(backgroundExecutor_)),
      currentTimeProvider_(wallClock(services_.clock)),
      clientDetails_(std::make_shared<const ClientDetailsProvider>(services_.userDefaults)),
      networkManager_(
          std::make_shared<NetworkManager>(log_, services_.http, services_.files, services_.random)),
      remoteLogger_(std::make_shared<RemoteLog>(
          log_, remoteLogEnvironment(services_, clientDetails_, backgroundExecutor_))),
      orchestratorClass_(std::move(orchestratorClass)),
      appearanceDetection_(makeAppearanceDetection()),
      memoryUse_(log, "PublicSide/MirethSR") {
    log_.setRemotePoster(remoteLogger_);
}

MirethSRCore::~MirethSRCore() {
    *self_ = nullptr;
}

void MirethSRCore::askServices() {
    remoteLogger_->askServices();
}

InitializationResult MirethSRCore::initializeProject(const std::string& brandId, const std::string& projectId,
                                                     std::shared_ptr<platform::Window> window) {
    logErrorInbox_->drain();
    if (hasActiveSession()) {
        return refuseWhileRunning();
    }
    const auto networkState = std::make_shared<NetworkStateProvider>(
        log_, services_.makePathMonitor(),
        [background = services_.background](Work work) { background->post(std::move(work)); });
    MApiClient::Environment environment;
    environment.network = networkManager_;
    environment.information = services_.information;
    environment.clientDetails = clientDetails_;
    environment.systemVersion = services_.device->systemVersion();
    environment.background = backgroundExecutor_;
    const auto apiClient = std::make_shared<MApiClient>(log_, brandId, projectId, std::move(environment));
    // Before the identifiers are looked at: lines about a refused call carry the identifiers it was given.
    RemoteLog::ProjectData projectData;
    projectData.projectId = projectId;
    projectData.brandId = brandId;
    remoteLogger_->initialize(apiClient, networkState, std::move(projectData));
    if (brandId.empty() || projectId.empty()) {
        log_.error(LogTag::lifecycle, "Can't initialize. Both brandId and projectId are required.");
        return InitializationResult::paramsRequired;
    }
    if (!window) {
        window = services_.application->keyWindow();
    }
    if (!window) {
        log_.error(LogTag::lifecycle,
                   "Cannot get key window, pass it explicitly to the initializeProject method.");
        return InitializationResult::cannotGetKeyWindow;
    }
    auto orchestrator = buildGraph(window, apiClient, networkState);
    if (hasActiveSession()) {
        // Started meanwhile by a log listener or by a service of the host.
        return refuseWhileRunning();
    }
    orchestrator_.swap(orchestrator);
    log_.info(LogTag::lifecycle, "Initialized project");
    return InitializationResult::success;
}

InitializationResult MirethSRCore::refuseWhileRunning() {
    log_.info(LogTag::lifecycle, "Can't initialize. A session is already running");
    return InitializationResult::sessionAlreadyRunning;
}

Async<SessionStartResult> MirethSRCore::startRecording(VexConfiguration vexConfiguration) {
    logErrorInbox_->drain();
    if (!orchestrator_) {
        log_.error(LogTag::lifecycle, "Unable to start recording. Orchestrator is nil",
                   {{"errorDetails", "initializeProject has not succeeded."}});
        return resolved(SessionStartResult::of(SessionStartResult::Kind::notInitialized));
    }
    return run(orchestrator_->startRecording(std::move(vexConfiguration)),
               SessionStartResult::fail(std::nullopt));
}

SessionPauseResult MirethSRCore::pauseRecording() {
    logErrorInbox_->drain();
    const auto orchestrator = orchestrator_;
    return orchestrator ? orchestrator->pauseRecording() : SessionPauseResult::notInitialized;
}

SessionResumeResult MirethSRCore::resumeRecording() {
    logErrorInbox_->drain();
    const auto orchestrator = orchestrator_;
    return orchestrator ? orchestrator->resumeRecording() : SessionResumeResult::notInitialized;
}

Async<SessionCloseResult> MirethSRCore::stopRecording() {
    logErrorInbox_->drain();
    if (!orchestrator_) {
        return resolved(SessionCloseResult::of(SessionCloseResult::Kind::notInitialized));
    }
    return run(orchestrator_->stopRecording(), SessionCloseResult::fail(std::nullopt));
}

void MirethSRCore::addLogListener(MirethLogListeners::Listener listener) {
    log_.addLogListener(std::move(listener));
}

void MirethSRCore::logError(std::optional<std::string> message) {
    logErrorInbox_->add({currentTimeProvider_().toTimestampMillis(), std::move(message)});
}

std::shared_ptr<LogErrorInbox> MirethSRCore::makeLogErrorInbox() const {
    return std::make_shared<LogErrorInbox>(services_.mainQueue, [self = self_](const LogErrorData& error) {
        if (*self != nullptr) {
            (*self)->recordLogErrorOnMain(error);
        }
    });
}

void MirethSRCore::recordLogErrorOnMain(const LogErrorData& error) {
    if (const auto orchestrator = orchestrator_) {
        orchestrator->recordLogError(error);
    } else {
        log_.error(LogTag::signal, "Can't log error. Not initialized.");
    }
}

void MirethSRCore::reportScreenChange(const std::vector<ScreenHierarchyElement>& screenHierarchy,
                                      ScreenChangeType changeType, ScreenDetectionType detectionType,
                                      const char* messageWithoutOrchestrator) {
    if (const auto orchestrator = orchestrator_) {
        orchestrator->recordScreenChange(screenHierarchy, changeType, detectionType);
    } else {
        log_.error(LogTag::signal, messageWithoutOrchestrator);
    }
}

void MirethSRCore::reset() {
    logErrorInbox_->drain();
    if (orchestrator_) {
        orchestrator_->abandon();
    }
    orchestrator_.reset();
    log_.reset();
}

bool MirethSRCore::hasActiveSession() const {
    return orchestrator_ && !orchestrator_->state().isStopped();
}

std::set<LogTag> MirethSRCore::allowedLoggingTags() const {
    return log_.allowedTags();
}

void MirethSRCore::setAllowedLoggingTags(const std::set<LogTag>& tags) {
    log_.setAllowedTags(tags);
}

std::shared_ptr<Orchestrator> MirethSRCore::makeOrchestrator(MirethLog& log,
                                                             Orchestrator::Collaborators collaborators,
                                                             Executor mainExecutor,
                                                             CurrentTimeProvider currentTimeProvider) {
    return std::make_shared<Orchestrator>(log, std::move(collaborators), std::move(mainExecutor),
                                          std::move(currentTimeProvider));
}

template <class T>
AsyncPromise<T> MirethSRCore::makePromise() const {
    const auto queue = services_.mainQueue;
    return AsyncPromise<T>([queue](Work work) { queue->post(std::move(work)); },
                           [queue] { return queue->isCurrent(); });
}

template <class T>
Async<T> MirethSRCore::run(Task<T> task, T onException) const {
    const auto promise = makePromise<T>();
    auto finish = [promise, onException = std::move(onException)](const std::exception_ptr& exception,
                                                                  T result) {
        if (exception) {
            reportEscapedException(exception);
            promise.fulfil(onException);
            return;
        }
        promise.fulfil(std::move(result));
    };
    asio::co_spawn(mainExecutor_, std::move(task), std::move(finish));
    return promise.async();
}

template AsyncPromise<SessionStartResult> MirethSRCore::makePromise() const;
template AsyncPromise<SessionCloseResult> MirethSRCore::makePromise() const;

}  // namespace mireth
