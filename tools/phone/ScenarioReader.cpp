// Reads a scenario file from the top: settings here, views and steps in readers of their own.
#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>

#include "phone/ActionReader.hpp"
#include "phone/JsonFile.hpp"
#include "phone/JsonNode.hpp"
#include "phone/JsonPath.hpp"
#include "phone/KnownNames.hpp"
#include "phone/Scenario.hpp"
#include "phone/ScenarioError.hpp"
#include "phone/StepReader.hpp"
#include "phone/ViewReader.hpp"

namespace mireth::phone {

namespace {

constexpr std::array<std::string_view, 12> topKeys{"name",          "clock",       "device",  "window",
                                                   "bundle",        "defaults",    "network", "project",
                                                   "configuration", "viewClasses", "screens", "steps"};

/// Classes of views that every phone has.
constexpr std::array<std::string_view, 7> builtInClasses{"View",      "Label",  "TextField", "TextView",
                                                         "ImageView", "Button", "Window"};

void readText(std::string& result, const JsonNode& node, std::string_view key) {
    if (const auto value = node.find(key)) {
        result = value->text();
    }
}

void readFlag(bool& result, const JsonNode& node, std::string_view key) {
    if (const auto value = node.find(key)) {
        result = value->boolean();
    }
}

void readClock(Scenario& scenario, const JsonNode& node) {
    static constexpr std::array<std::string_view, 2> keys{"epochMillis", "uptimeSeconds"};
    node.requireKeys(keys);
    if (const auto epoch = node.find("epochMillis")) {
        constexpr std::int64_t largest = 4'102'444'800'000;  // the year 2100
        scenario.epochMillis = epoch->integer(0, largest);
    }
    if (const auto uptime = node.find("uptimeSeconds")) {
        scenario.uptimeSeconds = uptime->number(0, 1e9);
    }
}

void readDevice(headless::DeviceValues& device, const JsonNode& node) {
    static constexpr std::array<std::string_view, 7> keys{"idiom",         "model",    "name",     "codename",
                                                          "systemVersion", "vendorId", "memoryMiB"};
    static constexpr std::array<std::string_view, 4> idioms{"phone", "pad", "desktop", "television"};
    node.requireKeys(keys);
    if (const auto idiom = node.find("idiom")) {
        device.idiom = static_cast<platform::UserInterfaceIdiom>(idiom->choice(idioms));
    }
    readText(device.model, node, "model");
    readText(device.name, node, "name");
    readText(device.machine, node, "codename");
    readText(device.systemVersion, node, "systemVersion");
    if (const auto vendor = node.find("vendorId")) {
        device.identifierForVendor = vendor->isNull() ? std::nullopt : std::optional(vendor->text());
    }
    if (const auto memory = node.find("memoryMiB")) {
        device.physicalMemory = static_cast<std::uint64_t>(memory->integer(1, 16 << 20)) << 20U;
    }
}

void readWindow(Scenario& scenario, const JsonNode& node) {
    static constexpr std::array<std::string_view, 3> keys{"width", "height", "scale"};
    node.requireKeys(keys);
    if (const auto width = node.find("width")) {
        scenario.windowSize.width = readWindowSide(*width);
    }
    if (const auto height = node.find("height")) {
        scenario.windowSize.height = readWindowSide(*height);
    }
    if (const auto scale = node.find("scale")) {
        scenario.windowScale = scale->number(0.5, 4);
    }
}

/// Texts by key; null takes a default away.
void readTexts(headless::TextByKey& texts, const JsonNode& node) {
    for (const auto& [key, value] : node.members(1000)) {
        if (value.isNull()) {
            texts.erase(key);
        } else {
            texts[key] = value.text();
        }
    }
}

void readProject(Scenario& scenario, const JsonNode& node) {
    static constexpr std::array<std::string_view, 2> keys{"brandId", "projectId"};
    node.requireKeys(keys);
    readText(scenario.brandId, node, "brandId");
    readText(scenario.projectId, node, "projectId");
}

bool isKnownClass(const Scenario& scenario, const std::string& name) {
    return std::ranges::find(builtInClasses, name) != builtInClasses.end() ||
           std::ranges::find(scenario.viewClasses, name, &ViewClassSpec::name) != scenario.viewClasses.end();
}

void readViewClasses(Scenario& scenario, const JsonNode& list) {
    static constexpr std::array<std::string_view, 2> keys{"name", "superclass"};
    for (const auto& node : list.elements(0, 1000)) {
        node.requireKeys(keys);
        ViewClassSpec viewClass{node.at("name").name(), "View"};
        if (isKnownClass(scenario, viewClass.name) || viewClass.name == "ViewController") {
            node.at("name").fail("is the name of another class: " + quotedText(viewClass.name));
        }
        if (const auto superclass = node.find("superclass")) {
            viewClass.superclass = superclass->name();
            if (!isKnownClass(scenario, viewClass.superclass)) {
                superclass->fail("names no class that is known here: " + superclass->shown() +
                                 "; a superclass comes first");
            }
        }
        scenario.viewClasses.push_back(std::move(viewClass));
    }
}

void readConfiguration(Scenario& scenario, const JsonNode& node) {
    static constexpr std::array<std::string_view, 3> keys{"disableMasking", "automaticNavigationTracking",
                                                          "additionalViewTypesToMask"};
    node.requireKeys(keys);
    readFlag(scenario.disableMasking, node, "disableMasking");
    readFlag(scenario.automaticNavigationTracking, node, "automaticNavigationTracking");
    if (const auto list = node.find("additionalViewTypesToMask")) {
        for (const auto& name : list->elements(0, 1000)) {
            if (!isKnownClass(scenario, name.name())) {
                name.fail("names no class of views: " + name.shown());
            }
            scenario.additionalViewTypesToMask.push_back(name.name());
        }
    }
}

void requireKnownClasses(const Scenario& scenario, const std::vector<ViewSpec>& views) {
    for (const auto& view : views) {
        if (view.viewClass == "Window" || !isKnownClass(scenario, view.viewClass)) {
            throw ScenarioError(view.path + ".class",
                                "names no class of views: " + quotedText(view.viewClass));
        }
        requireKnownClasses(scenario, view.subviews);
    }
}

std::set<std::string> readScreens(Scenario& scenario, const JsonNode& list, ViewReader& views) {
    static constexpr std::array<std::string_view, 3> keys{"name", "background", "views"};
    std::set<std::string> names;
    for (const auto& node : list.elements(1, 1000)) {
        node.requireKeys(keys);
        ScreenSpec screen;
        screen.path = node.path();
        screen.name = node.at("name").name();
        if (!names.insert(screen.name).second) {
            node.at("name").fail("is the name of another screen, too: " + quotedText(screen.name));
        }
        if (const auto background = node.find("background")) {
            screen.background = readColor(*background);
        }
        if (const auto children = node.find("views")) {
            screen.views = views.readViews(*children);
        }
        requireKnownClasses(scenario, screen.views);
        scenario.screens.push_back(std::move(screen));
    }
    return names;
}

void requireKnownNames(const Scenario& scenario, const KnownNames& names) {
    for (const auto& screen : scenario.screens) {
        names.requireInReactions(screen.views);
    }
    for (const auto& step : scenario.steps) {
        names.require(step);
    }
}

template <class Read>
void readMember(const JsonNode& node, std::string_view key, Read read) {
    if (const auto value = node.find(key)) {
        read(*value);
    }
}

}  // namespace

Scenario parseScenario(const std::string& text, const std::filesystem::path& folder) {
    const nlohmann::ordered_json document = parseJson(text);
    const JsonNode root(document);
    root.requireKeys(topKeys);
    Scenario scenario;
    readText(scenario.name, root, "name");
    readMember(root, "clock", [&](const JsonNode& node) { readClock(scenario, node); });
    readMember(root, "device", [&](const JsonNode& node) { readDevice(scenario.device, node); });
    readMember(root, "window", [&](const JsonNode& node) { readWindow(scenario, node); });
    readMember(root, "bundle", [&](const JsonNode& node) { readTexts(scenario.bundle, node); });
    readMember(root, "defaults", [&](const JsonNode& node) { readTexts(scenario.userDefaults, node); });
    readMember(root, "network", [&](const JsonNode& node) { scenario.network = readNetwork(node); });
    readMember(root, "project", [&](const JsonNode& node) { readProject(scenario, node); });
    readMember(root, "viewClasses", [&](const JsonNode& node) { readViewClasses(scenario, node); });
    readMember(root, "configuration", [&](const JsonNode& node) { readConfiguration(scenario, node); });
    const SettingsReader settings(folder);
    ViewReader views(settings);
    const auto screenNames = readScreens(scenario, root.at("screens"), views);
    scenario.steps = readSteps(root.at("steps"), settings);
    requireKnownNames(scenario, {screenNames, views.ids()});
    return scenario;
}

Scenario readScenario(const std::filesystem::path& file) {
    return parseScenario(readWholeFile(file, maximumScenarioBytes, true), file.parent_path());
}

}  // namespace mireth::phone
