// Runs `mireth-receiver export` for every video that is asked for: a file that a stranger made to break its
// reader then breaks that process and not the receiver.
#pragma once

#include <atomic>
#include <functional>
#include <semaphore>
#include <string>

#include "store/Store.hpp"
#include "video/VideoExporter.hpp"

namespace mireth::receiver {

class ProgramExporter final : public VideoExporter {
  public:
    /// `program` is mireth-receiver, `data` its data directory; files pass through "exports" in it, which is
    /// emptied now.
    static Stored<std::unique_ptr<ProgramExporter>> create(std::string program, const std::string& data,
                                                           std::function<std::string()> newIdentifier);

    std::expected<std::shared_ptr<ByteSource>, ExportError> make(const std::string& sessionId) override;
    /// Gives up what is being made, and makes nothing more.
    void end() { ending_ = true; }

  private:
    ProgramExporter(std::string program, std::string data, std::function<std::string()> newIdentifier);

    std::expected<std::shared_ptr<ByteSource>, ExportError> run(const std::string& sessionId) const;

    const std::string program_;
    const std::string data_;
    const std::function<std::string()> newIdentifier_;
    std::counting_semaphore<2> free_{2};
    std::atomic<bool> ending_ = false;
};

}  // namespace mireth::receiver
