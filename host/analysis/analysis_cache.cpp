#include "host/analysis/analysis_cache.h"

#include <ctime>
#include <fstream>
#include <vector>

#include "host/audio/audio_error.h"
#include "host/audio/ffmpeg.h"
#include "host/audio/file_identity.h"

namespace orvelhost {
namespace {

std::string HashOfBytes(const std::filesystem::path& path, const Progress& progress) {
  const ffmpeg::HashPtr state(av_murmur3_alloc());
  if (!state) {
    throw std::bad_alloc();
  }
  av_murmur3_init(state.get());
  std::ifstream file(path, std::ios::binary);
  std::vector<char> piece(1 << 20);
  do {
    if (progress && !progress(0.0)) {
      throw Cancelled();
    }
    file.read(piece.data(), static_cast<std::streamsize>(piece.size()));
    av_murmur3_update(state.get(), reinterpret_cast<const std::uint8_t*>(piece.data()),
                      static_cast<std::size_t>(file.gcount()));
  } while (file);
  if (!file.eof()) {
    throw AudioError("cannot read " + Quoted(path));
  }
  std::uint8_t hash[16];
  av_murmur3_final(state.get(), hash);
  return {reinterpret_cast<const char*>(hash), sizeof hash};
}

}  // namespace

std::string ContentKey(const std::filesystem::path& path, const Progress& progress) {
  static std::mutex mutex;
  static std::map<FileIdentity, std::string> known;

  const FileIdentity identity = IdentityOf(path);
  {
    const std::lock_guard lock(mutex);
    if (const auto found = known.find(identity); found != known.end()) {
      return found->second;
    }
  }
  const std::string hash = HashOfBytes(path, progress);
  // Clocks of file systems tick slowly: a file that was written just now may be written again
  // without a sign of it.
  constexpr std::time_t kTick = 2;  // seconds
  if (std::time(nullptr) - identity.writtenSeconds > kTick) {
    const std::lock_guard lock(mutex);
    known.emplace(identity, hash);
  }
  return hash;
}

std::shared_ptr<AnalysisCache::Entry> AnalysisCache::Find(const std::string& contentKey,
                                                          const std::string& work) {
  const std::lock_guard lock(mutex_);
  std::shared_ptr<Entry>& entry = entries_[{contentKey, work}];
  if (!entry) {
    entry = std::make_shared<Entry>();
  }
  return entry;
}

}  // namespace orvelhost
