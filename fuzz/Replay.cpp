// Runs a fuzz target over kept inputs, in any build: the corpus, and every input that broke something once.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <span>
#include <vector>

#include "Property.hpp"

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> filesBelow(const fs::path& folder) {
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(folder)) {
        if (entry.is_regular_file()) {
            files.push_back(entry.path());
        }
    }
    std::ranges::sort(files);
    return files;
}

void replay(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    std::printf("%s\n", file.c_str());
    std::fflush(stdout);  // before a crash, whose input this names
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}

}  // namespace

/// Usage: replay_TARGET FOLDER …; a folder that is not there holds nothing. Fails when there was no input.
int main(int argumentCount, char** arguments) {
    std::size_t inputs = 0;
    for (const char* const folder :
         std::span(arguments, static_cast<std::size_t>(argumentCount)).subspan(1)) {
        if (fs::is_directory(folder)) {
            const auto files = filesBelow(folder);
            std::ranges::for_each(files, replay);
            inputs += files.size();
        }
    }
    std::printf("%zu inputs\n", inputs);
    return inputs > 0 ? 0 : 1;
}
