#pragma once

#include <utility>

namespace teskcore::utility {

/// Sets a flag while it lives, and then puts back what it was.
class FlagScope {
 public:
  explicit FlagScope(bool& flag) : flag_(flag), before_(std::exchange(flag, true)) {}
  ~FlagScope() { flag_ = before_; }
  FlagScope(const FlagScope&) = delete;
  FlagScope& operator=(const FlagScope&) = delete;

 private:
  bool& flag_;
  bool before_;
};

}  // namespace teskcore::utility
