#include "platforms/qt/attach/AttachSettings.hpp"

#include <QByteArray>
#include <array>
#include <string_view>
#include <utility>

#include "platforms/qt/attach/AttachVariables.hpp"

namespace mireth::qt {

namespace {

std::string take(const char* variable) {
    std::string value = qgetenv(variable).toStdString();
    qunsetenv(variable);
    return value;
}

void restore(const char* variable, const char* savedAs) {
    if (qEnvironmentVariableIsSet(savedAs)) {
        qputenv(variable, qgetenv(savedAs));
    } else {
        qunsetenv(variable);
    }
    qunsetenv(savedAs);
}

}  // namespace

std::optional<AttachSettings> takeAttachSettings() {
    AttachSettings settings;
    settings.brand = take(attach_variables::brand);
    settings.project = take(attach_variables::project);
    auto& information = settings.options.information.emplace();
    if (auto file = take(attach_variables::information); !file.empty()) {
        settings.options.informationFile = std::move(file);
    }
    const std::array<std::pair<std::string_view, const char*>, 2> endpoints{{
        {platform::information_keys::srEndpointUrl, attach_variables::srEndpoint},
        {platform::information_keys::keldaEndpointUrl, attach_variables::keldaEndpoint},
    }};
    for (const auto& [key, variable] : endpoints) {
        if (auto endpoint = take(variable); !endpoint.empty()) {
            information.emplace(key, std::move(endpoint));
        }
    }
    restore("QT_PLUGIN_PATH", attach_variables::pluginPath);
    restore("QT_QPA_GENERIC_PLUGINS", attach_variables::genericPlugins);
    if (settings.brand.empty() || settings.project.empty()) {
        return std::nullopt;
    }
    return settings;
}

}  // namespace mireth::qt
