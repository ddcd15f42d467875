// Everything the library asks of a phone, answered by Linux. For hosts without a toolkit, and the default.
#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "MirethVex/Base/Export.hpp"
#include "MirethVex/Linux/PlainApplication.hpp"
#include "MirethVex/Platform/PlatformServices.hpp"

namespace mireth::platform {

struct LinuxPlatformOptions {
    // Where values come from.

    /// The information dictionary: these values alone, or, beside an `informationFile`, in place of that
    /// file's.
    std::optional<std::map<std::string, std::string, std::less<>>> information;
    /// A JSON object of texts, 1 MiB at most. Absent, as `information` is: the file that the environment
    /// variable MIRETHVEX_INFO names, else MirethVex.info.json beside the executable.
    std::optional<std::filesystem::path> informationFile;
    /// The kind of device. Absent: the information dictionary's "DEVICE_IDIOM", else what the system says of
    /// its chassis.
    std::optional<UserInterfaceIdiom> idiom;
    /// Who makes the app. Apps of one vendor send the same identifier of the device, those of others another.
    std::string vendor = "MirethVex";

    // Where files go.

    /// The user caches directory. Absent: $XDG_CACHE_HOME where that is an absolute path, else ~/.cache. User
    /// defaults are always read from $XDG_CONFIG_HOME/mireth/defaults.json, else ~/.config.
    std::optional<std::filesystem::path> cachesDirectory;

    // Whom to talk to.

    /// A PEM file of authorities to trust beside the system's. While it cannot be read every request fails.
    std::optional<std::filesystem::path> extraCaFile;
    /// Speak plain http with any host, as the information dictionary's "ALLOW_INSECURE_HTTP" set to "true"
    /// does too; with a loopback host it is always allowed.
    bool allowInsecureHttp = false;
};

/// The services and the main loop that goes with them. The services may outlive this object.
class MIRETH_EXPORT LinuxPlatform {
  public:
    /// Reads the environment and the system's files, and starts two threads for background work and one for
    /// HTTP; each path monitor has one more. Until `runMainLoop` is called the process's first thread is the
    /// main thread, whichever calls this. Throws std::system_error when there are no threads to be had.
    explicit LinuxPlatform(LinuxPlatformOptions options = {});
    LinuxPlatform(const LinuxPlatform&) = delete;
    LinuxPlatform& operator=(const LinuxPlatform&) = delete;
    ~LinuxPlatform();

    /// The one behind `makeDefaultPlatformServices`, built with the default options at the first call. It is
    /// never destroyed. Any thread.
    static LinuxPlatform& shared();

    /// The same services at every call.
    PlatformServices services() const;

    /// What the host tells about its window, its screens and its move to the background. Main thread only.
    PlainApplication& application() const;

    /// Files of the host's that were unusable, one line each naming the file and why; their values count as
    /// absent. And values of the information dictionary that the library can make nothing of, one line each
    /// naming the key. Empty as a rule. Any thread.
    std::vector<std::string> warnings() const;

    /// Runs the library's main queue on the calling thread, which is the main thread from then on, until
    /// `stopMainLoop`. What is queued then waits for the next run. Not from within itself.
    void runMainLoop();
    /// Any thread, also before `runMainLoop`, which then returns at once.
    void stopMainLoop();

  private:
    struct Parts;
    const std::unique_ptr<Parts> parts_;
};

}  // namespace mireth::platform
