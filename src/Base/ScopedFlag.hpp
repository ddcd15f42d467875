// A flag that is true for as long as a scope lasts, however it is left.
#pragma once

namespace mireth {

class [[nodiscard]] ScopedFlag {
  public:
    /// `flag` must outlive the scope.
    explicit ScopedFlag(bool& flag) noexcept : flag_(flag) { flag_ = true; }
    ~ScopedFlag() { flag_ = false; }
    ScopedFlag(const ScopedFlag&) = delete;
    ScopedFlag& operator=(const ScopedFlag&) = delete;

  private:
    bool& flag_;
};

}  // namespace mireth
