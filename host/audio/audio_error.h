#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>

namespace orvelhost {

/// A failure that comes from outside: a file, its content, a device that is full. `what()` is one
/// line that names the file and the cause, fit to be shown to the person who gave the file.
class AudioError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;

  /// "cannot TASK 'FILE': CAUSE", where the cause may be an errno.
  AudioError(const std::string& task, const std::filesystem::path& file, const std::string& cause);
  AudioError(const std::string& task, const std::filesystem::path& file, int cause);
};

/// A text from outside, such as a file's name, as messages and terminals take it: one line, without
/// the control characters that it may hold. Quoted adds the quotes around it.
std::string Printable(const std::string& text);
std::string Quoted(const std::string& text);

}  // namespace orvelhost
