// `mireth-receiver export`: writes a session's video as one file. The server runs it for downloads.
#pragma once

#include <iosfwd>
#include <string>

namespace mireth::receiver {

struct ExportOptions {
    std::string data;
    std::string session;
    std::string output;
    bool replace = false;  ///< a file that is there already
};

/// Returns the exit status: 0, or 1 with a line on `errors`. Gives the process tight bounds first: it reads
/// files that strangers made.
int exportVideo(const ExportOptions& options, std::ostream& errors);

}  // namespace mireth::receiver
