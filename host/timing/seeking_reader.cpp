#include "host/timing/seeking_reader.h"

#include <algorithm>

namespace orvelhost {

AudioBlock SeekingReader::Read(std::int64_t begin, std::size_t count) {
  AudioBlock result(Format(), count);
  std::size_t done = begin < 0 ? std::min(count, static_cast<std::size_t>(-begin)) : 0;
  while (done < count && Load(begin + static_cast<std::int64_t>(done))) {
    const std::size_t offset =
        static_cast<std::size_t>(begin + static_cast<std::int64_t>(done) - blockBegin_);
    const std::size_t length = std::min(count - done, block_.FrameCount() - offset);
    for (int channel = 0; channel < result.ChannelCount(); ++channel) {
      std::ranges::copy(block_.Channel(channel).subspan(offset, length),
                        result.Channel(channel).subspan(done).begin());
    }
    done += length;
  }
  return result;
}

bool SeekingReader::Load(std::int64_t frame) {
  if (frame < blockBegin_) {
    source_ = open_();
    block_ = AudioBlock();
    blockBegin_ = 0;
  }
  while (frame >= blockBegin_ + static_cast<std::int64_t>(block_.FrameCount())) {
    const std::int64_t end = blockBegin_ + static_cast<std::int64_t>(block_.FrameCount());
    if (!source_->Read(block_)) {
      return false;
    }
    blockBegin_ = end;
  }
  return true;
}

}  // namespace orvelhost
