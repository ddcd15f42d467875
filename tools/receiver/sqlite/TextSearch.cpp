// Characters are code points; the C library's UTF-8 locale knows their lower case.
#include "sqlite/TextSearch.hpp"

#include <locale.h>
#include <wctype.h>

#include <memory>
#include <set>

namespace mireth::receiver {
namespace {

constexpr char32_t replacement = 0xFFFD;

// The character that begins at `at`, which moves behind it.
char32_t nextCharacter(std::string_view text, std::size_t& at) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char first = byte(at++);
    if (first < 0x80) {
        return first;
    }
    const int more = first >= 0xF0 ? 3 : first >= 0xE0 ? 2 : first >= 0xC2 ? 1 : 0;
    if (more == 0 || first > 0xF4) {
        return replacement;
    }
    auto value = static_cast<char32_t>(first & (0x3FU >> static_cast<unsigned>(more)));
    for (int i = 0; i < more; ++i) {
        if (at >= text.size() || (byte(at) & 0xC0U) != 0x80U) {
            return replacement;
        }
        value = (value << 6U) | (byte(at++) & 0x3FU);
    }
    return value;
}

void append(std::string& text, char32_t value) {
    const auto tail = [&](unsigned shift) { text += static_cast<char>(0x80U | ((value >> shift) & 0x3FU)); };
    if (value < 0x80) {
        text += static_cast<char>(value);
    } else if (value < 0x800) {
        text += static_cast<char>(0xC0U | (value >> 6U));
        tail(0);
    } else if (value < 0x10000) {
        text += static_cast<char>(0xE0U | (value >> 12U));
        tail(6);
        tail(0);
    } else {
        text += static_cast<char>(0xF0U | (value >> 18U));
        tail(12);
        tail(6);
        tail(0);
    }
}

struct FreeLocale {
    void operator()(locale_t locale) const { ::freelocale(locale); }
};

}  // namespace

std::string foldedText(std::string_view text) {
    const std::unique_ptr<std::remove_pointer_t<locale_t>, FreeLocale> utf8(
        ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr));
    std::string folded;
    for (std::size_t at = 0; at < text.size();) {
        const char32_t value = nextCharacter(text, at);
        const bool ascii = value >= 'A' && value <= 'Z';
        const char32_t lower =
            ascii  ? value + ('a' - 'A')
            : utf8 ? static_cast<char32_t>(::towlower_l(static_cast<wint_t>(value), utf8.get()))
                   : value;
        append(folded, lower);
    }
    return folded;
}

std::vector<std::string> gramsOf(std::string_view folded) {
    std::vector<std::size_t> begins;
    for (std::size_t at = 0; at < folded.size(); nextCharacter(folded, at)) {
        begins.push_back(at);
    }
    begins.push_back(folded.size());
    std::set<std::string> grams;
    for (std::size_t i = 0; i + 3 < begins.size(); ++i) {
        grams.emplace(folded.substr(begins[i], begins[i + 3] - begins[i]));
    }
    return {grams.begin(), grams.end()};
}

}  // namespace mireth::receiver
