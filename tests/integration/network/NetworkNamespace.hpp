// Runs part of a test in a network of its own, without touching the machine's.
#pragma once

#include <functional>
#include <string>

namespace mireth::test {

/// Runs `body` in a child process that has an empty network namespace, and takes its failures over. Skips
/// the test, aloud, where the system refuses namespaces.
void inOwnNetwork(const std::function<void()>& body);

/// Runs `ip ARGUMENTS`; a failure is one of the test's.
void ip(const std::string& arguments);

/// Adds an Ethernet link called `name`, up and with a carrier.
void addLink(const std::string& name);

/// Takes the carrier from a link made by `addLink`, as pulling the cable does; false when its kind has none
/// to take.
bool takeCarrier(const std::string& name);

}  // namespace mireth::test
