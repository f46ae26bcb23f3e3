#pragma once

#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>

#include "host/analysis/audio_source.h"
#include "host/analysis/progress.h"
#include "host/audio/file_identity.h"

namespace orvelhost {

/// An audio file that is read more than once. What can be read only once, a pipe or a terminal, is
/// first copied to a file without a name in the folder for temporary files, which goes with this
/// object.
class InputFile {
 public:
  /// Throws AudioError when there is no such file or it cannot be copied; while a pipe is waited
  /// for, Cancelled.
  InputFile(const std::filesystem::path& path, const Progress& progress);

  /// Throws AudioError as FileSource does.
  FileSource Open() const { return FileSource(readable_, path_); }
  AudioOpener Opener() const { return OpenerOf(readable_, path_); }

  /// Throws AudioError when the file is no longer the one that it was at first, or has been written
  /// to: passes over it would not have seen the same.
  void CheckUnchanged() const;

 private:
  struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };

  void CopyPipe(const Progress& progress);

  std::filesystem::path path_;
  std::filesystem::path readable_;  ///< by which it can be opened again and again
  std::unique_ptr<std::FILE, CloseFile> copy_;
  std::optional<FileIdentity> identity_;
};

}  // namespace orvelhost
