#include "host/audio/audio_writer.h"

#include <algorithm>
#include <cmath>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/audio/audio_error.h"
#include "tests/host/support/audio.h"

namespace orvelhost::testing {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

TEST(AudioWriter, WavKeepsEverySampleAlsoBeyondFullScale) {
  const TemporaryFolder folder;
  for (const int channelCount : {1, 2, 6, 16}) {
    SCOPED_TRACE(channelCount);
    const AudioBlock signal = Make(48000, channelCount, 0.1, Noise(3.0));
    WriteFile(folder / "a.WAV", signal);
    EXPECT_TRUE(HaveSameSamples(ReadFile(folder / "a.WAV"), signal));
    EXPECT_EQ(ReadBytes(folder / "a.WAV").substr(0, 4), "RIFF");
  }
}

TEST(AudioWriter, FlacLimitsToFullScaleAndMakesNoSampleLarger) {
  const TemporaryFolder folder;
  const AudioBlock signal = Make(44100, 2, 0.1, Noise(1.5));
  WriteFile(folder / "a.flac", signal);
  const AudioBlock read = ReadFile(folder / "a.flac");
  ASSERT_EQ(read.FrameCount(), signal.FrameCount());
  constexpr float kStep = 1.0f / 8388608.0f;
  for (int channel = 0; channel < 2; ++channel) {
    for (std::size_t frame = 0; frame < read.FrameCount(); ++frame) {
      const float limited = std::clamp(signal.Channel(channel)[frame], -1.0f, 1.0f);
      ASSERT_LE(std::abs(read.Channel(channel)[frame]), std::abs(limited));
      ASSERT_NEAR(read.Channel(channel)[frame], limited, kStep);
    }
  }
}

TEST(AudioWriter, SixteenBitSamplesPassThroughFlacUnchanged) {
  const TemporaryFolder folder;
  const AudioBlock signal = Make(44100, 1, 0.5, [noise = Noise(32768.0)](double time, int channel) {
    return std::trunc(noise(time, channel)) / 32768.0;
  });
  WriteFile(folder / "a.flac", signal);
  EXPECT_TRUE(HaveSameSamples(ReadFile(folder / "a.flac"), signal));
  WriteFile(folder / "a.wav", signal);
  for (const char* name : {"a.flac", "a.wav"}) {
    EXPECT_THAT(ReadBytes(folder / name), Not(HasSubstr("Lavf5"))) << "the libraries' version";
  }
}

TEST(AudioWriter, KeepsLinksAndPermissionsAndReplacesNoDevice) {
  namespace fs = std::filesystem;
  const TemporaryFolder folder;
  const AudioBlock signal = Make(44100, 1, 0.1, Noise(0.5));
  WriteBytes(folder / "there.wav", "as it was");
  fs::permissions(folder / "there.wav", fs::perms::owner_read | fs::perms::owner_write);
  fs::create_symlink("there.wav", folder / "link.wav");
  WriteFile(folder / "link.wav", signal);
  EXPECT_TRUE(fs::is_symlink(folder / "link.wav"));
  EXPECT_TRUE(HaveSameSamples(ReadFile(folder / "there.wav"), signal));
  EXPECT_EQ(fs::status(folder / "there.wav").permissions(),
            fs::perms::owner_read | fs::perms::owner_write);
  fs::create_symlink("/dev/null", folder / "device.wav");
  EXPECT_THROW(AudioWriter(folder / "device.wav", signal.Format()), AudioError);
}

TEST(AudioWriter, RefusesWhatItCannotWriteAndLeavesNothingBehind) {
  const TemporaryFolder folder;
  const std::tuple<const char*, AudioFormat, const char*> cases[] = {
      {"a", {44100, 2}, ".wav or .flac"},
      {"nine.flac", {44100, 9}, "8 channels"},
      {"fast.flac", {700000, 2}, "655350 Hz"}};
  for (const auto& [name, format, cause] : cases) {
    EXPECT_THAT(([path = folder / name, &format = format] { AudioWriter(path, format); }),
                ::testing::ThrowsMessage<AudioError>(AllOf(HasSubstr(cause), HasSubstr(name))));
  }
  EXPECT_THAT(folder.FileNames(), IsEmpty());
}

}  // namespace
}  // namespace orvelhost::testing
