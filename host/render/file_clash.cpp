#include "host/render/file_clash.h"

#include <cstdint>
#include <map>
#include <optional>
#include <system_error>
#include <utility>
#include <vector>

#include <sys/stat.h>

#include "host/audio/audio_error.h"
#include "host/audio/temporary_file.h"

namespace orvelhost {
namespace {

using std::filesystem::path;

struct RunFile {
  const char* role;
  path name;
};

std::string WouldReplace(const RunFile& one, const RunFile& other) {
  return std::string("the ") + one.role + " " + Quoted(one.name) + " would replace the " +
         other.role + " " + Quoted(other.name);
}

using Inode = std::pair<std::uint64_t, std::uint64_t>;  // behind the device that it is of

/// Of the file that has the name now, through links; none where there is none.
std::optional<Inode> InodeOf(const path& name) {
  struct stat status {};
  if (stat(name.c_str(), &status) != 0) return std::nullopt;
  return Inode(status.st_dev, status.st_ino);
}

/// Where a file of this name is written, in one spelling, also when there is none yet.
path PlaceOf(const path& name) {
  std::error_code error;
  const path place = std::filesystem::absolute(TemporaryFile::FollowLinks(name), error);
  const path canonical = std::filesystem::weakly_canonical(place, error);
  return error ? place : canonical;
}

}  // namespace

std::string FindFileClash(std::span<const RenderRequest> requests, const path& report) {
  std::map<Inode, path> inputs;
  std::vector<RunFile> written;
  for (const RenderRequest& request : requests) {
    if (const auto inode = InodeOf(request.input)) inputs.emplace(*inode, request.input);
    written.push_back({"output", request.output});
    written.push_back({"picture", request.picture});
  }
  written.push_back({"report", report});
  // Two hard links are two places: a file that is written takes a name, and the other one stays.
  std::map<path, RunFile> places;
  for (const RunFile& file : written) {
    if (file.name.empty()) continue;
    if (const auto inode = InodeOf(file.name); inode && inputs.contains(*inode)) {
      return WouldReplace(file, {"input", inputs.at(*inode)});
    }
    const auto [other, isNew] = places.emplace(PlaceOf(file.name), file);
    if (!isNew) return WouldReplace(file, other->second);
  }
  return "";
}

}  // namespace orvelhost
