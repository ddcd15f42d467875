// The rules of every FileManager. They are checked on the real file system, where every implementation ends.
#pragma once

#include "MirethVex/Platform/FileManager.hpp"
#include "TestSupport.hpp"

namespace mireth::test {

class FileManagerHarness {
  public:
    virtual ~FileManagerHarness() = default;
    virtual platform::FileManager& files() = 0;
    /// What `userCachesDirectory` has to answer.
    virtual std::filesystem::path expectedCachesDirectory() = 0;
};

using FileManagerContract = ContractTest<FileManagerHarness>;

}  // namespace mireth::test
