#include "apps/orvel/progress_bar.h"

#include <cstddef>
#include <cstdio>

#include <sys/ioctl.h>
#include <unistd.h>

namespace orvelcli {
namespace {

std::size_t TerminalWidth() {
  constexpr std::size_t kUsual = 80;
  winsize size{};
  return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : kUsual;
}

/// The beginning of a text that a terminal shows in `width` columns, at the most. Characters beyond
/// ASCII may be two columns wide.
std::string Fitted(const std::string& text, std::size_t width) {
  std::size_t used = 0;
  std::size_t length = 0;
  while (length < text.size()) {
    std::size_t next = length + 1;
    while (next < text.size() && (static_cast<unsigned char>(text[next]) & 0xc0) == 0x80) ++next;
    used += static_cast<unsigned char>(text[length]) < 0x80 ? 1U : 2U;
    if (used > width) break;
    length = next;
  }
  return text.substr(0, length);
}

}  // namespace

ProgressBar::ProgressBar() : visible_(isatty(STDERR_FILENO) == 1) {}

void ProgressBar::Wipe() {
  if (!shown_.empty()) std::fputs("\r\x1b[K", stderr);
  shown_.clear();
}

void ProgressBar::Show(double done, const std::string& text) {
  if (!visible_) return;
  const int width = text.empty() ? 40 : 20;
  const int percent = done < 0 ? 0 : static_cast<int>(done * 100.0);
  const auto filled = static_cast<std::size_t>(percent * width / 100);
  std::string number = done < 0 ? "?" : std::to_string(percent);
  number.insert(0, 3 - number.size(), ' ');
  const std::string line = Fitted("[" + std::string(filled, '#') +
                                      std::string(static_cast<std::size_t>(width) - filled, '.') +
                                      "] " + number + "%" + (text.empty() ? "" : " ") + text,
                                  TerminalWidth() - 1);
  if (line == shown_) return;
  shown_ = line;
  std::fprintf(stderr, "\r%s\x1b[K", line.c_str());
}

}  // namespace orvelcli
