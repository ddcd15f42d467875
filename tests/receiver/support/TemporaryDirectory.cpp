// mkdtemp and remove_all.
#include "support/TemporaryDirectory.hpp"

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace mireth::receiver::test {

TemporaryDirectory::TemporaryDirectory()
    : path_(std::filesystem::temp_directory_path() / "receiver-test-XXXXXX") {
    if (::mkdtemp(path_.data()) == nullptr) {
        throw std::runtime_error("no temporary directory");
    }
}

TemporaryDirectory::~TemporaryDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string TemporaryDirectory::write(const std::string& name, const std::string& text) const {
    const auto path = file(name);
    std::ofstream(path, std::ios::binary) << text;
    return path;
}

std::string fileText(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace mireth::receiver::test
