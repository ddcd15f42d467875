// mireth-receiver run as an operator runs it, for the benchmarks that talk to it.
#pragma once

#include <string>

#include "tests/receiver/support/Program.hpp"
#include "tests/receiver/support/RawClient.hpp"
#include "tests/receiver/support/Upload.hpp"

namespace mireth::benchmarks {

class ServedReceiver {
  public:
    /// Serves from `data`. Takes uploads as fast and as large as they come.
    explicit ServedReceiver(const std::string& data);

    /// The body of an answer with status 200; throws on any other.
    std::string get(const std::string& target) const;
    std::string createSession() const;
    /// Throws unless it is acknowledged.
    void upload(const receiver::test::Upload& upload) const;
    /// Where it serves, as a library that records is told.
    const std::string& origin() const { return origin_; }
    std::uint64_t peakMemory() const { return program_.peakMemory(); }

  private:
    receiver::test::Program program_;
    int port_ = 0;
    std::string origin_;
};

}  // namespace mireth::benchmarks
