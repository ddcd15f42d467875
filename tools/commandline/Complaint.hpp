// What the programs say about a command line that they cannot use: one line that names the option.
// Included by .cpp files only, as it names the parser's types.
#pragma once

#include <CLI/App.hpp>
#include <string>
#include <string_view>

namespace mireth::commandline {

/// What `app` complained of, in one line that names the option, without a line end.
std::string complaintOf(const CLI::App& app, const CLI::ParseError& error);

/// Complains of what `app` parsed and does not know; empty when there is nothing.
std::string complaintOfStrangers(const CLI::App& app);

/// Complains of an empty value.
CLI::Validator notEmpty();

/// `value` between double quotes as it may stand in one line: control characters replaced, cut at 200 bytes.
std::string inQuotes(std::string_view value);

}  // namespace mireth::commandline
