#pragma once

#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace orvelhost {

/// Gives files that go into one folder their names.
class OutputNames {
 public:
  /// The file's name with the ending of what it becomes, and a number if that was given before.
  std::string Take(const std::filesystem::path& source, const std::string& ending = ".wav");

 private:
  std::set<std::string> given_;
  std::map<std::string, int> lastNumbers_;  ///< that were given with a name, 1 for none
};

/// An input and what becomes of it.
struct RenderTask {
  std::filesystem::path input;
  std::filesystem::path output;
};

struct RenderList {
  std::vector<RenderTask> tasks;
  std::filesystem::path folder;      ///< of the outputs; empty when `output` names the one file
  std::vector<std::string> skipped;  ///< a line for each file of a folder that is no audio
  std::vector<std::string> faults;  ///< a line for each folder that cannot be read, or has no audio
};

/// Finds out what is to be rendered where. A name with a slash at its end is a folder's. `output`
/// is a file for one input; for several, and for one that is a folder, or where a folder stands
/// already, it is a folder. There FLAC stays FLAC, and all else becomes WAV.
///
/// A folder as input gives its audio files, by their names: those whose name ends like that of a
/// sound file, and of the others those that hold audio. Its folders, and names that begin with a
/// dot, are left out.
///
/// False, with `error` as one line that says why, when `output` is not what it has to be for these
/// inputs; AudioError when one of them is not even there. Nothing is written.
bool ListRenders(const std::vector<std::filesystem::path>& inputs,
                 const std::filesystem::path& output, RenderList& list, std::string& error);

}  // namespace orvelhost
