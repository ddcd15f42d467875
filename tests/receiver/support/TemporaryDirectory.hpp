// A directory that is gone when the test is. Used by every test that keeps files.
#pragma once

#include <string>

namespace mireth::receiver::test {

class TemporaryDirectory {
  public:
    TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;
    ~TemporaryDirectory();

    const std::string& path() const { return path_; }
    std::string file(const std::string& name) const { return path_ + "/" + name; }
    /// Writes a file and returns its path.
    std::string write(const std::string& name, const std::string& text) const;

  private:
    std::string path_;
};

/// The bytes of a file; none when it cannot be read.
std::string fileText(const std::string& path);

}  // namespace mireth::receiver::test
