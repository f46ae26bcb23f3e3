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
  for (; !made_.empty(); made_.pop_back()) rmdir(made_.back().c_str());  // where it is empty
}

}  // namespace orvelhost
