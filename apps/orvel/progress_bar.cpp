#include "apps/orvel/progress_bar.h"

#include <cstddef>
#include <cstdio>
#include <string>

#include <unistd.h>

namespace orvelcli {

ProgressBar::ProgressBar() : visible_(isatty(STDERR_FILENO) == 1) {}

ProgressBar::~ProgressBar() {
  if (shown_ >= 0) {
    std::fputs("\r\x1b[K", stderr);
  }
}

void ProgressBar::Show(double done) {
  constexpr int kWidth = 40;
  const int percent = done < 0 ? 0 : static_cast<int>(done * 100.0);
  if (!visible_ || percent == shown_) {
    return;
  }
  shown_ = percent;
  const std::size_t filled = static_cast<std::size_t>(percent * kWidth / 100);
  const std::string bar = std::string(filled, '#') + std::string(kWidth - filled, '.');
  const std::string number = done < 0 ? "  ?" : std::to_string(percent);
  std::fprintf(stderr, "\r[%s] %3s%%", bar.c_str(), number.c_str());
}

}  // namespace orvelcli
