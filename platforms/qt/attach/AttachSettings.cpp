#include "platforms/qt/attach/AttachSettings.hpp"

#include <QByteArray>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <array>
#include <map>
#include <utility>

namespace mireth::qt {

namespace {

using Texts = std::map<std::string, std::string, std::less<>>;

std::string take(const char* variable) {
    std::string value = qgetenv(variable).toStdString();
    qunsetenv(variable);
    return value;
}

Texts informationFile() {
    Texts texts;
    const std::string named = take(attach_variables::information);
    QFile file(
        QFile::decodeName(named.empty() ? qgetenv("MIRETHVEX_INFO") : QByteArray::fromStdString(named)));
    if (file.fileName().isEmpty() || !file.open(QIODevice::ReadOnly)) {
        return texts;
    }
    const QJsonObject values = QJsonDocument::fromJson(file.readAll()).object();
    for (auto value = values.begin(); value != values.end(); ++value) {
        if (value->isString()) {
            texts[value.key().toStdString()] = value->toString().toStdString();
        }
    }
    return texts;
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
    Texts information = informationFile();
    const std::array<std::pair<std::string_view, const char*>, 2> endpoints{{
        {platform::information_keys::srEndpointUrl, attach_variables::srEndpoint},
        {platform::information_keys::keldaEndpointUrl, attach_variables::keldaEndpoint},
    }};
    for (const auto& [key, variable] : endpoints) {
        if (auto endpoint = take(variable); !endpoint.empty()) {
            information[std::string(key)] = std::move(endpoint);
        }
    }
    settings.options.information = std::move(information);
    restore("QT_PLUGIN_PATH", attach_variables::pluginPath);
    restore("QT_QPA_GENERIC_PLUGINS", attach_variables::genericPlugins);
    if (settings.brand.empty() || settings.project.empty()) {
        return std::nullopt;
    }
    return settings;
}

}  // namespace mireth::qt
