#include <poll.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <regex>
#include <thread>

#include "TestSupport.hpp"
#include "platforms/linux/system/JournalSystemLog.hpp"
#include "platforms/linux/system/SyslogSocket.hpp"

namespace mireth::platform {

using namespace std::string_literals;

namespace {

/// Stands for the log's reader.
class LogReader {
  public:
    explicit LogReader(const std::string& path) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        path.copy(address.sun_path, sizeof(address.sun_path) - 1);
        if (bind(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0) {
            throw std::system_error(errno, std::generic_category(), path);
        }
    }
    LogReader(const LogReader&) = delete;
    LogReader& operator=(const LogReader&) = delete;
    ~LogReader() { close(socket_); }

    /// Empty when nothing is there.
    std::string read() const {
        std::string record(1024 * 1024, '\0');
        const ssize_t got = recv(socket_, record.data(), record.size(), MSG_DONTWAIT);
        record.resize(got < 0 ? 0 : static_cast<std::size_t>(got));
        return record;
    }

  private:
    int socket_ = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
};

}  // namespace

TEST(SyslogSocket, WritesOneRecordWithPriorityTimeAndIdentifier) {
    const test::TemporaryDirectory root;
    const LogReader reader((root / "log").native());
    SyslogSocket((root / "log").native()).write(3, "M-VEX", "%s of 100%");
    const std::string record = reader.read();
    const std::regex form(R"(<11>[A-Z][a-z]{2} [ \d]\d \d\d:\d\d:\d\d M-VEX\[\d+\]: %s of 100%)");
    EXPECT_TRUE(std::regex_match(record, form)) << record;
}

TEST(SyslogSocket, ControlCharactersDoNotBreakTheRecord) {
    const test::TemporaryDirectory root;
    const LogReader reader((root / "log").native());
    SyslogSocket((root / "log").native()).write(6, "M-VEX", "a\nb\0c\x7f\xc3\xa9"s);
    const std::string record = reader.read();
    EXPECT_TRUE(record.starts_with("<14>")) << record;
    EXPECT_TRUE(record.ends_with(": a#012b#000c#177\xc3\xa9")) << record;
    EXPECT_EQ(reader.read(), "");
}

TEST(SyslogSocket, ALongMessageIsCut) {
    const test::TemporaryDirectory root;
    const LogReader reader((root / "log").native());
    SyslogSocket((root / "log").native()).write(6, "M-VEX", std::string(100'000, '\n'));
    EXPECT_EQ(reader.read().size(), 8u * 1024);
}

TEST(SyslogSocket, AReaderThatHasFallenBehindCostsLinesAndNoTime) {
    const test::TemporaryDirectory root;
    const LogReader reader((root / "log").native());
    const SyslogSocket log((root / "log").native());
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < 2000; ++i) {
        log.write(6, "M-VEX", "x");
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
    EXPECT_NE(reader.read(), "");
}

TEST(SyslogSocket, NobodyListeningIsNoError) {
    const test::TemporaryDirectory root;
    SyslogSocket((root / "missing").native()).write(6, "M-VEX", "x");
    SyslogSocket(std::string(300, 'p')).write(6, "M-VEX", "x");
}

namespace {

/// What the child found; its exit status.
enum class Finding : int { fine = 0, refused = 77, wrong = 1 };

/// A /run of this process's own with a journal's socket in it.
bool enterOwnRun() {
    return unshare(CLONE_NEWNS) == 0 && mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           mount("none", "/run", "tmpfs", 0, nullptr) == 0;
}

bool isOneWholeRecord(const std::string& record) {
    const auto has = [&](const std::string& field) { return record.find(field) != std::string::npos; };
    // A value with a line break travels as its length in eight bytes, then the bytes.
    return has("MESSAGE\n\x0b\0\0\0\0\0\0\0%s\nPRIORITY\n"s) && has("PRIORITY=3\n") &&
           has("SYSLOG_IDENTIFIER=M-VEX\n") && has("MIRETH_CATEGORY=network\n") && !has("CODE_FILE");
}

Finding writeToOwnJournal() {
    if (!enterOwnRun()) {
        return Finding::refused;
    }
    JournalSystemLog log;
    if (log.hasStructuredLog()) {
        return Finding::wrong;
    }
    log.writeStructured("M-VEX", "network", SystemLogType::info, "nobody listens");
    std::filesystem::create_directories("/run/systemd/journal");
    const LogReader journal("/run/systemd/journal/socket");
    if (!log.hasStructuredLog()) {
        return Finding::wrong;
    }
    log.writeStructured("M-VEX", "network", SystemLogType::error, "%s\nPRIORITY");
    const std::string record = journal.read();
    if (!isOneWholeRecord(record)) {
        fprintf(stderr, "unexpected record: %s\n", record.c_str());
        return Finding::wrong;
    }
    // A journal that reads no more: an alarm ends the process when a write waits for it.
    alarm(20);
    for (int i = 0; i < 2000; ++i) {
        log.writeStructured("M-VEX", "network", SystemLogType::info, "x");
    }
    return Finding::fine;
}

}  // namespace

TEST(JournalSystemLog, WritesWholeRecordsAndNeverWaitsForTheJournal) {
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        _exit(static_cast<int>(writeToOwnJournal()));
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status)) << "ended by signal " << WTERMSIG(status);
    if (WEXITSTATUS(status) == static_cast<int>(Finding::refused)) {
        GTEST_SKIP()
            << "NOT TESTED: this system refuses mount namespaces, so there is no journal to write to";
    }
    EXPECT_EQ(WEXITSTATUS(status), 0);
}

}  // namespace mireth::platform
