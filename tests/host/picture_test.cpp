#include <algorithm>
#include <cmath>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/audio/audio_error.h"
#include "host/picture/portrait_collector.h"
#include "host/picture/render_picture.h"
#include "host/render/renderer.h"
#include "tests/host/support/audio.h"

namespace orvelhost {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

SoundPortrait PortraitOf(const AudioBlock& sound) {
  PortraitCollector collector(sound.Format());
  const auto source = OpenerOf(sound)();
  for (AudioBlock block; source->Read(block);) {
    collector.Add(block);
  }
  return collector.Finish();
}

PicturedSound Pictured(const AudioBlock& sound) {
  return {PortraitOf(sound), AnalyzeClip(*OpenerOf(sound)())};
}

double Sum(const std::vector<SpectrumBand>& bands) {
  double power = 0.0;
  for (const SpectrumBand& band : bands) {
    power += std::pow(10.0, band.level / 10.0);
  }
  return 10.0 * std::log10(power);
}

TEST(Picture, ToneStandsInItsBandAndAtItsLoudnessHoweverShortItIs) {
  for (const double seconds : {0.1, 0.75, 4.0}) {
    const SoundPortrait portrait = PortraitOf(testing::Make(48000, 2, seconds, testing::Sine(0.5)));
    EXPECT_NEAR(portrait.Duration(), seconds, 1e-9);
    const auto loudest = std::ranges::max_element(portrait.spectrum, {}, &SpectrumBand::level);
    EXPECT_NEAR(loudest->frequency, 1000.0, 1e-6);
    EXPECT_NEAR(Sum(portrait.spectrum), -9.03, 0.05) << seconds;
    EXPECT_LT(portrait.spectrum.front().level, -60.0) << seconds;
    ASSERT_EQ(portrait.loudness.size(), static_cast<std::size_t>(seconds / 0.1));
    // A sine in both channels has its peak for a loudness. The weighting filter has to settle.
    for (const LoudnessPoint& point : portrait.loudness) {
      EXPECT_NEAR(point.greatestMomentary, -6.02, 0.2);
      EXPECT_NEAR(point.greatestShortTerm, -6.02, 0.2);
    }
  }
}

TEST(Picture, LongSoundKeepsItsExtremesAtTheirTimesInTheSameMemory) {
  constexpr int kRate = 8000;
  AudioBlock sound(AudioFormat{kRate, 2}, std::size_t{kRate} * 300);
  sound.Channel(0)[kRate * 70] = 0.9F;
  sound.Channel(0)[kRate * 271 + 1] = -0.8F;
  sound.Channel(1)[sound.FrameCount() - 1] = 0.7F;
  const SoundPortrait portrait = PortraitOf(sound);
  const std::vector<WaveColumn>& left = portrait.lanes[0];
  EXPECT_LE(std::max(left.size(), portrait.loudness.size()), 2048U);
  const auto columnAt = [&](double seconds) {
    return static_cast<std::size_t>(seconds * kRate) /
           static_cast<std::size_t>(portrait.framesPerColumn);
  };
  for (std::size_t index = 0; index < left.size(); ++index) {
    EXPECT_EQ(left[index].greatest, index == columnAt(70.0) ? 0.9F : 0.0F) << index;
    EXPECT_EQ(left[index].least, index == columnAt(271.0) ? -0.8F : 0.0F) << index;
  }
  EXPECT_NEAR(left[columnAt(70.0)].square, 0.81, 1e-6);
  EXPECT_EQ(portrait.lanes[1].back().greatest, 0.7F);

  EXPECT_NEAR(static_cast<double>(portrait.loudness.size()) * portrait.secondsPerPoint, 300.0, 0.2);
}

TEST(Picture, PngHasItsSizeWhateverTheSoundIsLikeAndTheSameBytesEachTime) {
  const testing::TemporaryFolder folder;
  const PicturedSound tone = Pictured(testing::Make(44100, 2, 0.3, testing::Sine(2.0)));
  for (const PicturedSound& after :
       {tone, Pictured(AudioBlock(AudioFormat{8000, 1}, 0)),
        Pictured(AudioBlock(AudioFormat{8000, 1}, 1)),
        Pictured(testing::Make(48000, 6, 2.0, testing::Noise(1e-9)))}) {
    const RenderPicture picture{"a\nb \xff.wav", "", tone, after, LoudnessTarget{}};
    for (const char* name : {"a.png", "b.png"}) {
      TemporaryFile file(folder / name);
      DrawRenderPicture(picture, file);
      file.Commit();
    }
    const std::string bytes = testing::ReadBytes(folder / "a.png");
    EXPECT_TRUE(bytes == testing::ReadBytes(folder / "b.png"));
    // The signature, then the header's length and name, width and height.
    EXPECT_THAT(bytes, StartsWith(std::string(
                           "\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\x06\x40\0\0\x04\xb0", 24)));
    EXPECT_THAT(bytes, EndsWith(std::string("IEND\xae\x42\x60\x82")));
  }
  EXPECT_EQ(folder.FileNames().size(), 2U);
}

TEST(Picture, GoesWithItsOutputOrBothStayAway) {
  const testing::TemporaryFolder folder;
  const Host host;
  testing::WriteFile(folder / "in.wav", testing::Make(48000, 2, 0.5, testing::Sine(0.1)));
  testing::WriteBytes(folder / "old.png", "old");
  RenderRequest request;
  request.input = folder / "in.wav";
  request.output = folder / "out.wav";
  for (const char* picture : {"missing/a.png", "old.png", "in.wav/a.png"}) {
    request.picture = folder / picture;
    EXPECT_THROW(Render(host, request), AudioError);
    EXPECT_EQ(folder.FileNames().size(), 2U) << picture;
  }
  EXPECT_EQ(testing::ReadBytes(folder / "old.png"), "old");

  request.replaceOutput = true;
  request.picture = folder / "old.png";
  request.isDryRun = true;
  Render(host, request);
  EXPECT_EQ(testing::ReadBytes(folder / "old.png"), "old") << "a dry run draws nothing";
  request.isDryRun = false;
  Render(host, request);
  EXPECT_THAT(testing::ReadBytes(folder / "old.png"), HasSubstr("IHDR"));
  EXPECT_EQ(folder.FileNames().size(), 3U);

  request.replaceOutput = false;
  request.output = folder / "late.wav";
  request.picture = folder / "late.png";
  for (const char* name : {"late.wav", "late.png"}) {
    request.progress = [&](double) {
      testing::WriteBytes(folder / name, "of another program");
      return true;
    };
    EXPECT_THROW(Render(host, request), AudioError);
    EXPECT_EQ(folder.FileNames().size(), 4U) << name;
    std::filesystem::remove(folder / name);
  }
}

}  // namespace
}  // namespace orvelhost
