#include "Platform/Async/QueueExecutors.hpp"

#include <atomic>
#include <boost/asio/execution.hpp>
#include <boost/asio/execution_context.hpp>
#include <exception>
#include <list>
#include <mutex>
#include <thread>
#include <utility>

#include "Base/GuardedRun.hpp"
#include "Platform/Async/DroppingScope.hpp"

namespace mireth {

namespace {

namespace execution = boost::asio::execution;

/// Posts with `post`, and drops what cannot be posted where nothing may be thrown.
template <class Post>
void postOrDrop(const char* service, Post&& post) {
    if (DroppingScope::isOpen()) {
        runGuarded(service, post);
    } else {
        post();
    }
}

/// Where the work of an executor goes. Asio asks each executor for a context.
class Target : public asio::execution_context {
  public:
    virtual ~Target() = default;
    virtual void post(Work work) = 0;
    virtual bool isCurrent() const noexcept = 0;
};

class MainTarget final : public Target {
  public:
    explicit MainTarget(std::weak_ptr<platform::MainQueue> queue) : queue_(std::move(queue)) {}
    ~MainTarget() override { shutdown(); }

    void post(Work work) override {
        if (const auto queue = queue_.lock()) {
            postOrDrop("the main queue", [&] { queue->post(std::move(work)); });
        }
    }

    bool isCurrent() const noexcept override {
        const auto queue = queue_.lock();
        return queue && queue->isCurrent();
    }

  private:
    std::weak_ptr<platform::MainQueue> queue_;
};

class BackgroundTarget final : public Target {
  public:
    explicit BackgroundTarget(std::weak_ptr<platform::BackgroundExecutor> background)
        : background_(std::move(background)) {}
    ~BackgroundTarget() override { shutdown(); }

    void post(Work work) override {
        if (const auto background = background_.lock()) {
            postOrDrop("the background executor", [&] { background->post(std::move(work)); });
        }
    }

    bool isCurrent() const noexcept override { return false; }

  private:
    std::weak_ptr<platform::BackgroundExecutor> background_;
};

/// One piece of work at a time, in order, on another executor. Not an Asio strand: that keeps its queue in
/// the context, which here dies with the last executor; and when the other executor drops the strand's work,
/// what waits would own the strand, and the strand what waits, for ever.
class SerialTarget final : public Target, public std::enable_shared_from_this<SerialTarget> {
  public:
    explicit SerialTarget(Executor executor) : executor_(std::move(executor)) {}
    ~SerialTarget() override { shutdown(); }

    void post(Work work) override {
        {
            const std::lock_guard lock(mutex_);
            waiting_.push_back(std::move(work));
            if (std::exchange(isScheduled_, true)) {
                return;
            }
        }
        schedule();
    }

    bool isCurrent() const noexcept override { return runner_.load() == std::this_thread::get_id(); }

  private:
    /// What the other executor is given. If it is dropped there, what waits is dropped too.
    class Turn {
      public:
        explicit Turn(std::shared_ptr<SerialTarget> target) : target_(std::move(target)) {}
        Turn(Turn&&) noexcept = default;
        Turn& operator=(Turn&&) = delete;
        Turn(const Turn&) = delete;
        Turn& operator=(const Turn&) = delete;
        ~Turn() {
            if (target_ != nullptr) {
                target_->abandon();
            }
        }
        void operator()() { std::exchange(target_, nullptr)->runNext(); }

      private:
        std::shared_ptr<SerialTarget> target_;
    };

    /// Goes on with the next piece of work whatever this one throws.
    class Succession {
      public:
        explicit Succession(SerialTarget& target) : target_(target) {
            target_.runner_ = std::this_thread::get_id();
        }
        ~Succession() {
            target_.runner_ = std::thread::id();
            // A turn that is not taken drops what waits: see Turn.
            const DroppingScope dropping;
            runGuarded("an executor", [this] { target_.finishTurn(); });
        }
        Succession(const Succession&) = delete;
        Succession& operator=(const Succession&) = delete;

      private:
        SerialTarget& target_;
    };

    void schedule() { asio::post(executor_, Turn(shared_from_this())); }

    void runNext() {
        const Succession succession(*this);
        Work work;
        {
            const std::lock_guard lock(mutex_);
            if (waiting_.empty()) {
                return;
            }
            work = std::move(waiting_.front());
            waiting_.pop_front();
        }
        work();
    }

    void finishTurn() {
        {
            const std::lock_guard lock(mutex_);
            isScheduled_ = !waiting_.empty();
            if (!isScheduled_) {
                return;
            }
        }
        schedule();
    }

    void abandon() noexcept {
        // A coroutine that is let go of posts its own end.
        const DroppingScope dropping;
        std::list<Work> dropped;
        const std::lock_guard lock(mutex_);
        isScheduled_ = false;
        dropped.swap(waiting_);
    }

    const Executor executor_;
    std::atomic<std::thread::id> runner_;
    std::mutex mutex_;
    bool isScheduled_ = false;  // guarded by mutex_
    std::list<Work> waiting_;   // guarded by mutex_; a list, which is swapped without memory
};

/// An executor in Asio's sense: copyable, comparable, and with the properties that any_io_executor asks for.
class TargetExecutor {
  public:
    TargetExecutor(std::shared_ptr<Target> target, bool mayRunInline)
        : target_(std::move(target)), mayRunInline_(mayRunInline) {}

    asio::execution_context& query(execution::context_t) const noexcept { return *target_; }

    execution::blocking_t query(execution::blocking_t) const noexcept {
        return mayRunInline_ ? execution::blocking_t(execution::blocking_t::possibly)
                             : execution::blocking_t(execution::blocking_t::never);
    }

    TargetExecutor require(execution::blocking_t::never_t) const { return {target_, false}; }
    TargetExecutor require(execution::blocking_t::possibly_t) const { return {target_, true}; }

    template <class Function>
    void execute(Function&& function) const {
        if (mayRunInline_ && target_->isCurrent()) {
            std::forward<Function>(function)();
        } else {
            target_->post(Work(std::forward<Function>(function)));
        }
    }

    friend bool operator==(const TargetExecutor& left, const TargetExecutor& right) noexcept {
        return left.target_ == right.target_ && left.mayRunInline_ == right.mayRunInline_;
    }

  private:
    std::shared_ptr<Target> target_;
    bool mayRunInline_;
};

}  // namespace

Executor makeMainExecutor(const std::shared_ptr<platform::MainQueue>& queue) {
    return TargetExecutor(std::make_shared<MainTarget>(queue), true);
}

Executor makeBackgroundExecutor(const std::shared_ptr<platform::BackgroundExecutor>& background) {
    return TargetExecutor(std::make_shared<BackgroundTarget>(background), true);
}

Executor makeSerialExecutor(const Executor& executor) {
    return TargetExecutor(std::make_shared<SerialTarget>(executor), true);
}

void reportEscapedException(const std::exception_ptr& exception) noexcept {
    runGuarded("an internal task", [&exception] { std::rethrow_exception(exception); });
}

}  // namespace mireth
