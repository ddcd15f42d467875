// Opening the data directory.
#include "sqlite/SqliteStore.hpp"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#include <filesystem>
#include <set>
#include <system_error>
#include <utility>

#include "sqlite/SqliteSchema.hpp"

namespace mireth::receiver {
namespace {

std::unexpected<std::string> failure(const std::string& what) {
    return std::unexpected(what + ": " + std::generic_category().message(errno));
}

// SQLite follows no link anywhere in a path, and the data directory may well be reached through one, as under
// systemd. The error is that of a directory that is not there.
Stored<std::string> resolved(const std::string& directory) {
    std::error_code error;
    auto path = std::filesystem::canonical(directory, error);
    if (error) {
        return std::unexpected("there is no receiver's data in " + directory);
    }
    return path.string();
}

void syncDirectory(const std::filesystem::path& directory) {
    const UniqueFd opened(
        ::open(directory.empty() ? "." : directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (opened) {
        ::fsync(opened.get());
    }
}

// With its name made durable: otherwise a power cut may leave chunks that were acknowledged without a folder.
bool makeDirectory(const std::filesystem::path& directory, mode_t mode) {
    const bool made = ::mkdir(directory.c_str(), mode) == 0;
    if (made) {
        syncDirectory(directory.parent_path());
    }
    return made || errno == EEXIST;
}

void makeDirectoriesAbove(const std::filesystem::path& path) {
    const auto above = path.parent_path();
    std::error_code error;
    if (!above.empty() && !std::filesystem::exists(above, error)) {
        makeDirectoriesAbove(above);
        makeDirectory(above, 0777);
    }
}

Stored<std::string> makePrivateDirectory(const std::string& directory) {
    makeDirectoriesAbove(directory);
    if (!makeDirectory(directory, 0700)) {
        return failure("cannot make the data directory " + directory);
    }
    if (::chmod(directory.c_str(), 0700) != 0) {
        return failure("cannot make the data directory " + directory + " private");
    }
    return resolved(directory);
}

// Holding the lock is what allows sweeping: nobody else has a video under way in this directory.
Stored<UniqueFd> lockDirectory(const std::string& directory) {
    const std::string path = directory + "/lock";
    UniqueFd lock(::open(path.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!lock) {
        return failure("cannot open " + path);
    }
    if (::flock(lock.get(), LOCK_EX | LOCK_NB) != 0) {
        return std::unexpected("another receiver serves from " + directory);
    }
    return lock;
}

// SQLite gives a new database the umask's mode and its side files the database's.
Stored<void> makePrivateFile(const std::string& path) {
    const UniqueFd file(::open(path.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!file || ::fchmod(file.get(), 0600) != 0) {
        return failure("cannot make " + path);
    }
    return {};
}

}  // namespace

SqliteStore::SqliteStore(std::string directory, UniqueFd lock, Database database, Database reader,
                         std::unique_ptr<DiskBudget> budget, std::unique_ptr<FileSystem> files,
                         VideoFolder videos, std::function<std::string()> newIdentifier)
    : directory_(std::move(directory)),
      lock_(std::move(lock)),
      budget_(std::move(budget)),
      files_(std::move(files)),
      videos_(std::move(videos)),
      newIdentifier_(std::move(newIdentifier)),
      opened_(newIdentifier_ ? newIdentifier_() : ""),
      database_(std::move(database)),
      reader_(std::move(reader)) {}

Stored<std::unique_ptr<SqliteStore>> SqliteStore::open(const std::string& directory,
                                                       std::function<std::string()> newIdentifier,
                                                       DiskLimits limits, std::unique_ptr<FileSystem> files) {
    const auto found = makePrivateDirectory(directory);
    if (!found) {
        return std::unexpected(found.error());
    }
    auto lock = lockDirectory(*found);
    if (!lock) {
        return std::unexpected(lock.error());
    }
    const std::string path = *found + "/receiver.db";
    if (auto made = makePrivateFile(path); !made) {
        return std::unexpected(made.error());
    }
    auto budget = std::make_unique<DiskBudget>(*found, limits);
    auto videos = VideoFolder::open(*found + "/videos", *budget, *files);
    if (!videos) {
        return std::unexpected(videos.error());
    }
    syncDirectory(*found);
    try {
        Database database(path, Database::Mode::write);
        prepareSchema(database);
        std::unique_ptr<SqliteStore> store(new SqliteStore(
            *found, std::move(*lock), std::move(database), Database(path, Database::Mode::read),
            std::move(budget), std::move(files), std::move(*videos), std::move(newIdentifier)));
        store->count();
        store->sweep();
        store->clearLog();
        store->countStrayLines();
        return store;
    } catch (const DatabaseError& error) {
        return std::unexpected("cannot open the database " + path + ": " + error.what());
    }
}

Stored<std::unique_ptr<SqliteStore>> SqliteStore::openForReading(const std::string& directory) {
    const auto found = resolved(directory);
    if (!found) {
        return std::unexpected(found.error());
    }
    const std::string path = *found + "/receiver.db";
    if (!std::filesystem::exists(path)) {
        return std::unexpected("there is no receiver's data in " + directory);
    }
    auto budget = std::make_unique<DiskBudget>(*found, DiskLimits{});
    std::unique_ptr<FileSystem> files = std::make_unique<SystemFiles>();
    auto videos = VideoFolder::open(*found + "/videos", *budget, *files);
    if (!videos) {
        return std::unexpected(videos.error());
    }
    try {
        Database database(path, Database::Mode::read);
        requireSchema(database);
        return std::unique_ptr<SqliteStore>(
            new SqliteStore(*found, UniqueFd(), std::move(database), Database(path, Database::Mode::read),
                            std::move(budget), std::move(files), std::move(*videos), {}));
    } catch (const DatabaseError& error) {
        return std::unexpected("cannot open the database " + path + ": " + error.what());
    }
}

void SqliteStore::count() {
    auto row = database_.prepare("SELECT count(*), coalesce(sum(chunks), 0) FROM session");
    row.step();
    sessions_ = row.whole(0);
    chunks_ = row.whole(1);
}

void SqliteStore::sweep() {
    std::set<std::string> known;
    auto rows = database_.prepare("SELECT video FROM chunk");
    while (rows.step()) {
        known.insert(rows.text(0));
    }
    const auto removed = videos_.sweep(known);
    if (!removed) {
        throw DatabaseError(removed.error());
    }
    swept_ = *removed;
}

std::string SqliteStore::revision() const {
    return opened_ + "-" + std::to_string(changes_.load());
}

}  // namespace mireth::receiver
