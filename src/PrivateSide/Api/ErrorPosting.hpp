// Whether error lines written on the way go to the remote log.
#pragma once

namespace mireth {

/// `off` while a log line is being posted: what is logged then is never posted itself, else one failing
/// post would cause the next.
enum class ErrorPosting : bool { off, on };

}  // namespace mireth
