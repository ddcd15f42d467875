// A text is found through its rarest run of three characters.
#include "sqlite/TextLookup.hpp"

#include <optional>
#include <utility>

#include "sqlite/SqlValues.hpp"
#include "sqlite/TextSearch.hpp"

namespace mireth::receiver {
namespace {

struct Gram {
    std::string text;
    std::int64_t texts;  ///< that have it, as far as they were counted
};

std::optional<Gram> rarestGram(const Database& database, const std::string& folded, std::int64_t most) {
    std::optional<Gram> rarest;
    for (auto& gram : gramsOf(folded)) {
        const auto texts = boundedCount(database, "gram WHERE gram = ?", {gram}, most);
        if (!rarest || texts < rarest->texts) {
            rarest = {.text = std::move(gram), .texts = texts};
        }
    }
    return rarest;
}

TextIds idsIn(Statement& rows) {
    TextIds ids;
    for (; rows.step(); ++ids.count) {
        ids.json += (ids.json.empty() ? "[" : ",") + std::to_string(rows.whole(0));
    }
    ids.json += ids.json.empty() ? "" : "]";
    return ids;
}

}  // namespace

TextIds textsContaining(const Database& database, const std::string& folded, std::int64_t most) {
    const auto rarest = rarestGram(database, folded, most);
    const auto within = " instr(folded, ?) > 0 LIMIT " + std::to_string(most);
    // Too short for a run of three characters, or of common ones only: there are far fewer texts than
    // sessions, so every text is looked at.
    const bool every = !rarest || rarest->texts >= most;
    auto rows = database.prepare(
        every ? "SELECT id FROM text WHERE" + within
              : "SELECT id FROM gram JOIN text ON text.id = textId WHERE gram = ? AND" + within);
    if (!every) {
        rows.bind(rarest->text);
    }
    rows.bind(folded);
    return idsIn(rows);
}

TextIds screensNamed(const Database& database, const std::string& name) {
    auto rows = database.prepare("SELECT id FROM text WHERE kind = 0 AND value = ?");
    rows.bind(name);
    return idsIn(rows);
}

}  // namespace mireth::receiver
