#include "endtoend/support/PhoneRun.hpp"

#include <gtest/gtest.h>

#include <sstream>

namespace mireth::endtoend {

namespace {

void replaceAll(std::string& text, const std::string& from, const std::string& to) {
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
}

bool isAboutALogPost(const std::string& line) {
    return line.find("Ajax.php") != std::string::npos ||
           line.starts_with("Unexpected error while posting log");
}

}  // namespace

std::vector<std::string> PhoneRun::results() const {
    std::vector<std::string> results;
    for (const auto& line : lines) {
        if (line.at("event") == "result") {
            results.push_back(line.at("call").get<std::string>() + " " +
                              line.at("result").get<std::string>());
        }
    }
    return results;
}

std::vector<std::string> PhoneRun::errors() const {
    std::vector<std::string> errors;
    for (const auto& line : lines) {
        if (line.at("event") == "log" && line.at("level") == "error") {
            const std::string text = line.at("line");
            if (!isAboutALogPost(text)) {
                errors.push_back(text.substr(0, text.find(" [\"")));
            }
        }
    }
    return errors;
}

std::vector<std::string> PhoneRun::logged(const std::string& beginning) const {
    std::vector<std::string> found;
    for (const auto& line : lines) {
        if (line.at("event") == "log" && line.at("line").get<std::string>().starts_with(beginning)) {
            found.push_back(line.at("line"));
        }
    }
    return found;
}

Json PhoneRun::resultOf(const std::string& call) const {
    for (const auto& line : lines) {
        if (line.value("call", "") == call) {
            return line;
        }
    }
    return {};
}

std::vector<std::string> PhoneRun::sessionIds() const {
    std::vector<std::string> ids;
    for (const auto& line : lines) {
        if (line.contains("sessionId")) {
            ids.push_back(line.at("sessionId"));
        }
    }
    return ids;
}

Json PhoneRun::end() const {
    return lines.empty() ? Json() : lines.back();
}

PhoneRun runPhone(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), MIRETH_PHONE_PROGRAM);
    PhoneRun run{.ended = runProcess(std::move(arguments)), .lines = {}};
    EXPECT_FALSE(run.ended.gaveUp) << "the phone did not end by itself:\n" << run.ended.out;
    std::istringstream out(run.ended.out);
    for (std::string line; std::getline(out, line);) {
        run.lines.push_back(Json::parse(line));
    }
    return run;
}

std::string withoutSessions(const PhoneRun& run) {
    std::string text = run.ended.out;
    for (const auto& line : run.lines) {
        if (line.contains("sessionId")) {
            replaceAll(text, line.at("sessionId"), "SESSION");
            replaceAll(text, line.at("sessionStartTimeMillis").dump(), "START");
        }
    }
    return text;
}

}  // namespace mireth::endtoend
