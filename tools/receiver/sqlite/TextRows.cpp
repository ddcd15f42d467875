// Texts repeat from session to session, so most are there already.
#include "sqlite/TextRows.hpp"

#include "sqlite/TextSearch.hpp"

namespace mireth::receiver {

std::int64_t textRow(const Database& database, const FoundText& text) {
    const std::int64_t kind = text.kind == FoundText::Kind::screen ? 0 : 1;
    auto known = database.prepare("SELECT id FROM text WHERE kind = ? AND value = ?");
    if (known.bind(kind).bind(text.value).step()) {
        return known.whole(0);
    }
    const auto folded = searchedForm(text.value);
    database.prepare("INSERT INTO text(kind, value, folded) VALUES (?, ?, ?)")
        .bind(kind)
        .bind(text.value)
        .bind(folded)
        .run();
    const auto id = database.lastRow();
    insertGrams(database, id, folded);
    return id;
}

std::string searchedForm(const std::string& value) {
    // Each character makes two rows, while everybody who writes waits.
    constexpr std::size_t most = 128;
    return foldedText(cutText(value, most));
}

void insertGrams(const Database& database, std::int64_t id, const std::string& folded) {
    auto gram = database.prepare("INSERT INTO gram(gram, textId) VALUES (?, ?)");
    for (const auto& each : gramsOf(folded)) {
        gram.bind(each).bind(id).run();
        gram.reset();
    }
}

}  // namespace mireth::receiver
