#include "host/render/output_folder.h"

#include <system_error>

#include <unistd.h>

#include "host/audio/audio_error.h"

namespace orvelhost {

// Behind another constructor, so that the destructor takes back what was made before a failure.
OutputFolder::OutputFolder(const std::filesystem::path& folder) : OutputFolder() {
  std::filesystem::path reached;
  for (const auto& step : folder) {
    reached /= step;
    std::error_code error;
    if (std::filesystem::create_directories(reached, error)) made_.push_back(reached);
    if (error) throw AudioError("make the folder", folder, error.message());
  }
}

OutputFolder::~OutputFolder() {
  // Where it is empty. Behind one that is not, all lead to it, and be it as "made/../other".
  while (!made_.empty() && rmdir(made_.back().c_str()) == 0) made_.pop_back();
}

}  // namespace orvelhost
