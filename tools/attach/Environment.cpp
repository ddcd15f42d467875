#include "attach/Environment.hpp"

#include <stdlib.h>

#include <filesystem>
#include <string>
#include <system_error>

#include "platforms/qt/attach/AttachVariables.hpp"

namespace mireth::attach {

namespace {

namespace variables = qt::attach_variables;

/// As far from this program in the build tree as where it is installed.
std::filesystem::path pluginDirectory() {
    std::error_code error;
    const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
    return (program.parent_path() / MIRETH_PLUGINS).lexically_normal();
}

void set(const char* variable, const std::string& value) {
    if (!value.empty()) {
        ::setenv(variable, value.c_str(), 1);
    }
}

/// In front of what is there already, which is saved.
void prepend(const char* variable, const std::string& value, char separator, const char* saveAs) {
    const char* const found = ::getenv(variable);
    // A copy: to change the environment may move what was found.
    const std::string before = found != nullptr ? found : "";
    if (found != nullptr) {
        ::setenv(saveAs, before.c_str(), 1);
    }
    ::setenv(variable, before.empty() ? value.c_str() : (value + separator + before).c_str(), 1);
}

}  // namespace

void setEnvironment(const Options& options) {
    set(variables::brand, options.brand);
    set(variables::project, options.project);
    set(variables::srEndpoint, options.srEndpoint);
    set(variables::keldaEndpoint, options.keldaEndpoint.empty() ? options.srEndpoint : options.keldaEndpoint);
    set(variables::information, options.information.native());
    prepend("QT_PLUGIN_PATH", pluginDirectory().native(), ':', variables::pluginPath);
    prepend("QT_QPA_GENERIC_PLUGINS", "mireth", ',', variables::genericPlugins);
}

}  // namespace mireth::attach
