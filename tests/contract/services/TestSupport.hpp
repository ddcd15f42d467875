// Small things the service tests share: a directory that goes away, a flag to wait for across threads.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <system_error>

namespace mireth::test {

/// A fresh directory below the system's temporary one, removed with all it holds.
class TemporaryDirectory {
  public:
    TemporaryDirectory() {
        std::string pattern = (std::filesystem::temp_directory_path() / "mireth-test-XXXXXX").native();
        if (mkdtemp(pattern.data()) == nullptr) {
            throw std::system_error(errno, std::generic_category(), pattern);
        }
        path_ = pattern;
    }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
    ~TemporaryDirectory() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    const std::filesystem::path& path() const { return path_; }
    std::filesystem::path operator/(std::string_view name) const { return path_ / name; }

  private:
    std::filesystem::path path_;
};

inline void writeFile(const std::filesystem::path& path, std::string_view content) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << content;
}

/// Counts events of other threads; waiting ends by itself so that a broken test fails and does not hang.
class Counter {
  public:
    void increment() {
        const std::lock_guard lock(mutex_);
        ++count_;
        changed_.notify_all();
    }
    bool waitFor(int count, std::chrono::milliseconds limit = std::chrono::seconds(20)) {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, limit, [&] { return count_ >= count; });
    }
    int count() {
        const std::lock_guard lock(mutex_);
        return count_;
    }

  private:
    std::mutex mutex_;
    std::condition_variable changed_;
    int count_ = 0;  // guarded by mutex_
};

/// What a contract suite is run against: a name for the test's and a way to make the thing.
template <class Harness>
struct Implementation {
    std::string name;
    std::function<std::unique_ptr<Harness>()> make;
};

template <class Harness>
std::ostream& operator<<(std::ostream& out, const Implementation<Harness>& implementation) {
    return out << implementation.name;
}

/// The one whose harness is a `Made`.
template <class Harness, class Made>
Implementation<Harness> implementation(std::string name) {
    return {std::move(name), [] { return std::make_unique<Made>(); }};
}

inline constexpr auto nameOfImplementation = [](const auto& info) { return info.param.name; };

/// The fixture of a suite: makes the harness before each test.
template <class Harness>
class ContractTest : public testing::TestWithParam<Implementation<Harness>> {
  protected:
    void SetUp() override { harness_ = this->GetParam().make(); }
    std::unique_ptr<Harness> harness_;
};

}  // namespace mireth::test
