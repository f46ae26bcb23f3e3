#pragma once

namespace orvelcli {

/// A bar on the terminal behind the error stream; shows nothing when that is no terminal.
class ProgressBar {
 public:
  ProgressBar();
  /// Wipes the bar away.
  ~ProgressBar();
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  /// `done` is 0..1, or -1 when it is not known how much there is.
  void Show(double done);

 private:
  bool visible_;
  int shown_ = -1;
};

}  // namespace orvelcli
