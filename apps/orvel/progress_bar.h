#pragma once

#include <string>

namespace orvelcli {

/// A bar on the terminal behind the error stream; shows nothing when that is no terminal.
class ProgressBar {
 public:
  ProgressBar();
  /// Wipes the bar away.
  ~ProgressBar() { Wipe(); }
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  bool IsVisible() const { return visible_; }

  /// `done` is 0..1, or -1 when it is not known how much there is; `text`, one line, stands behind
  /// the bar, as far as the terminal is wide.
  void Show(double done, const std::string& text = "");

  /// Makes way for something else; the next Show brings the bar back.
  void Wipe();

 private:
  bool visible_;
  std::string shown_;
};

}  // namespace orvelcli
