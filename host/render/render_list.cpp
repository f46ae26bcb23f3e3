#include "host/render/render_list.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <system_error>

#include "host/audio/audio_error.h"
#include "host/audio/audio_reader.h"
#include "host/audio/audio_writer.h"
#include "host/audio/file_identity.h"

namespace orvelhost {
namespace {

using std::filesystem::path;

/// A file that is called so and cannot be read is a failure; others may just be no audio.
bool IsCalledSound(const path& file) {
  constexpr std::array<std::string_view, 17> kEndings = {
      ".aac", ".aif", ".aiff", ".alac", ".au",   ".caf", ".flac", ".m4a", ".mka",
      ".mp3", ".oga", ".ogg",  ".opus", ".rf64", ".w64", ".wav",  ".wma"};
  return std::ranges::find(kEndings, EndingOf(file)) != kEndings.end();
}

/// Or is to be one, as a slash at the end of the name says.
bool IsFolder(const path& name) {
  std::error_code error;
  return (!name.empty() && !name.has_filename()) || std::filesystem::is_directory(name, error);
}

/// Adds the audio files of a folder.
void ExpandFolder(const path& folder, std::vector<path>& files, RenderList& list) {
  std::error_code cause;
  std::vector<path> found;
  for (std::filesystem::directory_iterator entry(folder, cause), end; !cause && entry != end;
       entry.increment(cause)) {
    const bool isHidden = entry->path().filename().native().starts_with('.');
    if (!isHidden && !IsFolder(entry->path())) found.push_back(entry->path());
  }
  if (cause) {
    list.faults.push_back("cannot read the folder " + Quoted(folder) + ": " + cause.message());
    return;
  }
  std::ranges::sort(found);
  const std::size_t before = files.size();
  for (const path& file : found) {
    try {
      const auto status = std::filesystem::status(file, cause);
      const bool isLost = !std::filesystem::exists(status);  // a link that leads nowhere
      if (!std::filesystem::is_regular_file(status) && !(isLost && IsCalledSound(file)))
        throw AudioError("no file: " + Quoted(file));
      if (!IsCalledSound(file)) AudioReader reader(file);
      files.push_back(file);
    } catch (const AudioError& fault) {
      list.skipped.push_back(std::string("left out: ") + fault.what());
    }
  }
  if (files.size() == before) {
    list.faults.push_back("the folder " + Quoted(folder) + " holds no audio");
  }
}

}  // namespace

std::string OutputNames::Take(const path& source, const std::string& ending) {
  const std::string stem = source.stem().string();
  int& last = lastNumbers_[stem + ending];
  std::string name;
  do {
    ++last;
    name = stem;
    if (last > 1) name.append(" ").append(std::to_string(last));
    name += ending;
  } while (!given_.insert(name).second);
  return name;
}

bool ListRenders(const std::vector<path>& inputs, const path& output, RenderList& list,
                 std::string& error) {
  const bool isBatch =
      inputs.size() > 1 || std::ranges::any_of(inputs, &IsFolder) || IsFolder(output);
  std::error_code cause;
  std::string fault;
  if (isBatch && !IsFolder(output) &&
      (std::filesystem::exists(output, cause) || AudioWriter::IsSupported(output))) {
    fault = "the output of several files is a folder, and " + Quoted(output) + " is none";
  } else if (!isBatch && !AudioWriter::IsSupported(output)) {
    fault = "the output's name must end in .wav or .flac, not as in " + Quoted(output);
  }
  if (!fault.empty()) {
    std::ranges::for_each(inputs, &IdentityOf);  // a mistyped folder is no fault of the output
    error = fault;
    return false;
  }
  std::vector<path> files;
  for (const path& input : inputs) {
    if (IsFolder(input)) {
      ExpandFolder(input, files, list);
    } else {
      files.push_back(input);
    }
  }
  if (isBatch) list.folder = output;
  OutputNames names;
  for (const path& file : files) {
    const std::string ending = EndingOf(file) == ".flac" ? ".flac" : ".wav";
    list.tasks.push_back({file, isBatch ? output / names.Take(file, ending) : output});
  }
  return true;
}

}  // namespace orvelhost
