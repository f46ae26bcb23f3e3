#include "host/analysis/progress.h"

#include <algorithm>

namespace orvelhost {

bool ProgressingReader::Read(AudioBlock& block) {
  if (progress_) {
    const std::int64_t stated = source_.StatedFrameCount();
    const double done =
        stated > 0 ? std::min(1.0, static_cast<double>(frameCount_) / static_cast<double>(stated))
                   : -1.0;
    if (!progress_(done)) {
      throw Cancelled();
    }
  }
  if (!source_.Read(block)) {
    return false;
  }
  frameCount_ += static_cast<std::int64_t>(block.FrameCount());
  return true;
}

Progress StepOf(const Progress& progress, double begin, double end) {
  if (!progress) {
    return {};
  }
  return [&progress, begin, end](double done) {
    return progress(done < 0 ? done : begin + done * (end - begin));
  };
}

}  // namespace orvelhost
