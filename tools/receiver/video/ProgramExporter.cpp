// posix_spawn and a wait with an end.
#include "video/ProgramExporter.hpp"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>

#include <cerrno>
#include <chrono>
#include <filesystem>
#include <system_error>
#include <utility>
#include <vector>

#include "video/OpenFile.hpp"

namespace mireth::receiver {
namespace {

constexpr std::chrono::seconds mostTime{90};

// Gives the place back when the work is done, however it ends.
class Turn {
  public:
    explicit Turn(std::counting_semaphore<2>& free) : free_(free) {}
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;
    ~Turn() { free_.release(); }

  private:
    std::counting_semaphore<2>& free_;
};

// Gone with the object; who has it open can still read it.
class PassingFile {
  public:
    explicit PassingFile(std::string path) : path_(std::move(path)) {}
    PassingFile(const PassingFile&) = delete;
    PassingFile& operator=(const PassingFile&) = delete;
    ~PassingFile() { ::unlink(path_.c_str()); }
    const std::string& path() const { return path_; }

  private:
    const std::string path_;
};

std::optional<pid_t> spawn(std::vector<std::string> arguments) {
    std::vector<char*> pointers;
    pointers.reserve(arguments.size() + 1);
    for (auto& argument : arguments) {
        pointers.push_back(argument.data());
    }
    pointers.push_back(nullptr);
    posix_spawnattr_t attributes{};
    posix_spawnattr_init(&attributes);
    // The receiver's own threads block the signals that end it; the program must not.
    sigset_t none;
    sigemptyset(&none);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
    posix_spawn_file_actions_t actions{};
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    // Neither connections nor the store are its business.
    posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
    pid_t process = -1;
    char* const environment[] = {nullptr};
    const int failed =
        ::posix_spawn(&process, pointers[0], &actions, &attributes, pointers.data(), environment);
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
    return failed == 0 ? std::optional(process) : std::nullopt;
}

// False when it takes too long or `ending` is raised meanwhile; looks at that now and then.
bool endsInTime(pid_t process, const std::atomic<bool>& ending) {
    const UniqueFd handle(static_cast<int>(::syscall(SYS_pidfd_open, process, 0)));
    const auto until = std::chrono::steady_clock::now() + mostTime;
    while (handle && !ending && std::chrono::steady_clock::now() < until) {
        pollfd entry{.fd = handle.get(), .events = POLLIN, .revents = 0};
        const int ready = ::poll(&entry, 1, 200);
        if (ready > 0 || (ready < 0 && errno != EINTR)) {
            return ready > 0;
        }
    }
    return false;
}

// True when it ended well in time; it has ended in any case.
bool finished(pid_t process, const std::atomic<bool>& ending) {
    if (!endsInTime(process, ending)) {
        ::kill(process, SIGKILL);
    }
    int status = 0;
    while (::waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace

ProgramExporter::ProgramExporter(std::string program, std::string data,
                                 std::function<std::string()> newIdentifier)
    : program_(std::move(program)), data_(std::move(data)), newIdentifier_(std::move(newIdentifier)) {}

Stored<std::unique_ptr<ProgramExporter>> ProgramExporter::create(std::string program, const std::string& data,
                                                                 std::function<std::string()> newIdentifier) {
    const auto folder = data + "/exports";
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
    if (::mkdir(folder.c_str(), 0700) != 0) {
        return std::unexpected("cannot make the folder " + folder + ": " +
                               std::generic_category().message(errno));
    }
    return std::unique_ptr<ProgramExporter>(
        new ProgramExporter(std::move(program), data, std::move(newIdentifier)));
}

std::expected<std::shared_ptr<ByteSource>, ExportError> ProgramExporter::make(const std::string& sessionId) {
    if (!free_.try_acquire()) {
        return std::unexpected(ExportError{.busy = true, .why = "other videos are being made"});
    }
    const Turn turn(free_);
    return run(sessionId);
}

std::expected<std::shared_ptr<ByteSource>, ExportError> ProgramExporter::run(
    const std::string& sessionId) const {
    const PassingFile file(data_ + "/exports/" + newIdentifier_() + ".mp4");
    // Made by the receiver, so that it is private whatever the program does.
    if (!UniqueFd(::open(file.path().c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600))) {
        return std::unexpected(ExportError{.why = "cannot make " + file.path()});
    }
    const auto process =
        spawn({program_, "export", sessionId, "--data", data_, "--output", file.path(), "--force"});
    if (!process || !finished(*process, ending_)) {
        return std::unexpected(
            ExportError{.why = "the video of session " + sessionId + " could not be made"});
    }
    auto video = OpenFile::of(UniqueFd(::open(file.path().c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC)));
    if (!video) {
        return std::unexpected(ExportError{.why = "cannot open " + file.path() + ": " + video.error()});
    }
    return std::shared_ptr<ByteSource>(std::move(*video));
}

}  // namespace mireth::receiver
