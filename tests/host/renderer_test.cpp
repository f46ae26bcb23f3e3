#include "host/render/renderer.h"

#include <algorithm>
#include <cmath>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/audio/audio_error.h"
#include "host/render/report_text.h"
#include "tests/host/support/audio.h"

namespace orvelhost::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class RendererTest : public ::testing::Test {
 protected:
  /// Renders in.wav to `output` with the settings, all of which must be right.
  RenderReport RenderWith(const std::vector<std::string>& settings,
                          const std::string& output = "out.wav") {
    request_.input = folder_ / "in.wav";
    request_.output = folder_ / output;
    request_.replaceOutput = true;
    std::string error;
    EXPECT_TRUE(ParseSettings(settings, SettableSections(request_.look.mode),
                              request_.look.settings, error))
        << error;
    return Render(host_, request_);
  }

  AudioBlock Rendered(const std::vector<std::string>& settings,
                      const std::string& output = "out.wav") {
    RenderWith(settings, output);
    return ReadFile(folder_ / output);
  }

  Host host_;
  TemporaryFolder folder_;
  RenderRequest request_;
};

TEST_F(RendererTest, NeutralSettingsGiveBackTheSamples) {
  // Below the ceiling that the volume section has at 0 dB, -2.14 dBFS.
  const AudioBlock signal = Make(44100, 2, 0.5, Noise(0.78));
  WriteFile(folder_ / "in.wav", signal);
  EXPECT_TRUE(HaveSameSamples(Rendered({}), signal));
  EXPECT_LT(DifferenceInDb(Rendered({"volume.Volume=0", "stereowidth.AdjustStereoWidth=3.3333333",
                                     "pan.Pan=0"}),
                           signal),
            -140.0);
  EXPECT_LT(DifferenceInDb(Rendered({"volume.Volume=0"}, "out.flac"), signal), -138.0);
  EXPECT_TRUE(HaveSameSamples(Rendered({"volume.Volume=5", "volume.EnableVolume=0"}), signal));
  EXPECT_TRUE(HaveSameSamples(
      Rendered({"volume.Volume=5", "volume.Enabled=0", "pan.Pan=5", "pan.Enabled=0"}), signal));
}

TEST_F(RendererTest, WhatAFileCutsOffIsTold) {
  WriteFile(folder_ / "in.wav", Make(48000, 1, 0.1, Sine(1.5)));
  EXPECT_THAT(RenderWith({}, "out.flac").notes, ElementsAre(HasSubstr(" samples were cut off")));
  EXPECT_THAT(RenderWith({}, "out.wav").notes, IsEmpty());
}

TEST_F(RendererTest, TheFileNeverExceedsTheCeiling) {
  WriteFile(folder_ / "in.wav", Make(44100, 2, 0.3, Noise(3.0)));
  for (const char* output : {"out.wav", "out.flac"}) {
    for (const double gain : {-15.0, 0.0, 6.0}) {
      const double ceiling = -3.0 * (gain + 15.0) / 21.0;
      const AudioBlock out = Rendered({"volume.Volume=" + std::to_string(gain),
                                       "stereowidth.AdjustStereoWidth=10", "pan.Pan=2"},
                                      output);
      EXPECT_LE(Peak(out), std::pow(10.0, (ceiling + 0.0001) / 20.0)) << output << " " << gain;
    }
  }
}

TEST_F(RendererTest, MonoStaysMonoUntilItIsPanned) {
  WriteFile(folder_ / "in.wav", Make(44100, 1, 0.2, Sine(0.5)));
  const RenderReport wide = RenderWith({"stereowidth.AdjustStereoWidth=9", "volume.Volume=-3"});
  EXPECT_EQ(wide.outputFormat.channelCount, 1);
  EXPECT_THAT(wide.notes, ElementsAre(HasSubstr("Stereo Expander changes nothing")));
  const AudioBlock right = Rendered({"pan.Pan=5"});
  ASSERT_EQ(right.ChannelCount(), 2);
  EXPECT_TRUE(IsSilent(right.Channel(0)));
  EXPECT_TRUE(std::ranges::equal(right.Channel(1), ReadFile(folder_ / "in.wav").Channel(0)));
}

TEST_F(RendererTest, SurroundIsNotPannedAndThatIsSaid) {
  WriteFile(folder_ / "in.wav", Make(44100, 6, 0.2, Noise(0.5)));
  const RenderReport report = RenderWith({"pan.Pan=5"});
  EXPECT_THAT(report.notes, ElementsAre(HasSubstr("Pan changes nothing")));
  EXPECT_TRUE(HaveSameSamples(ReadFile(folder_ / "out.wav"), ReadFile(folder_ / "in.wav")));
}

TEST_F(RendererTest, AutoLoudnessReachesItsTargetBehindTheEffectsAndSaysWhereItCannot) {
  request_.look.mode = "dialog";
  WriteFile(folder_ / "in.wav", Make(48000, 2, 3.0, Noise(0.02)));
  const std::vector<std::string> settings = {"loudness.AutoLoudness=1", "clarity.EQPreset=4",
                                             "clarity.EQAmount=10"};
  const RenderReport reached = RenderWith(settings);
  EXPECT_NEAR(reached.after->loudness, -23.0, 0.1);
  EXPECT_THAT(reached.notes, IsEmpty());
  // Mono that becomes stereo is twice as loud; hard to a side it is as it was.
  WriteFile(folder_ / "in.wav", Make(48000, 1, 3.0, Noise(0.02)));
  for (const char* pan : {"pan.Pan=0.1", "pan.Pan=-5"}) {
    request_.look.mode = "sfx";
    EXPECT_NEAR(RenderWith({"loudness.AutoLoudness=1", pan}).after->loudness, -21.0, 0.1) << pan;
  }
  request_.look.mode = "dialog";
  // What lies under the meter's gate until the gain is on: half of quiet sound, the end of a decay.
  const auto halves = [](double amplitude) {
    return [noise = Noise(amplitude)](double time, int channel) {
      return noise(time, channel) * (time < 2.0 ? 1.0 : 0.4);
    };
  };
  const auto decay = [](double time, int) { return Sine(0.04 * std::exp(-time))(time, 0); };
  const std::pair<Signal, bool> quiet[] = {
      {halves(0.0004), true}, {halves(0.00005), true}, {decay, false}};
  for (const auto& [signal, isNoted] : quiet) {
    WriteFile(folder_ / "in.wav", Make(48000, 2, 10.0, signal));
    const RenderReport report = RenderWith({"loudness.AutoLoudness=1"});
    EXPECT_NEAR(report.after->loudness, -23.0, 0.01);
    EXPECT_NEAR(report.loudness->reached, report.after->loudness, 0.01);
    EXPECT_EQ(report.notes.size(), isNoted ? 1u : 0u) << "a gain beyond what a recording needs";
  }
  // One peak near full scale leaves no room.
  WriteFile(folder_ / "in.wav",
            Make(48000, 2, 3.0, [noise = Noise(0.02)](double time, int channel) {
              return noise(time, channel) + (time == 1.0 ? 0.8 : 0.0);
            }));
  const RenderReport limited = RenderWith({"loudness.AutoLoudness=1"});
  EXPECT_NEAR(limited.after->truePeak, -1.0, 0.1);
  EXPECT_THAT(limited.notes, ElementsAre(HasSubstr("below its target of -23.0")));
}

TEST_F(RendererTest, HumIsLookedForAndTheWrongMainsAreTold) {
  request_.look.mode = "dialog";
  WriteFile(folder_ / "in.wav", Make(48000, 1, 5.0, [noise = Noise(0.001)](double time, int) {
              return noise(time, 0) + Sine(0.05, 50.1)(time, 0) + Sine(0.02, 150.3)(time, 0);
            }));
  const AudioBlock in = ReadFile(folder_ / "in.wav");
  const AudioBlock out = Rendered({"restoration.ReduceHum=5", "restoration.HumFrequency=50"});
  for (const double frequency : {50.1, 150.3}) {
    EXPECT_LT(ToneInDb(out, frequency, 2, 5) - ToneInDb(in, frequency, 2, 5), -30.0);
  }
  const RenderReport wrong = RenderWith({"restoration.ReduceHum=5", "restoration.HumFrequency=60"});
  EXPECT_THAT(wrong.notes, ElementsAre(HasSubstr("the hum lies at 50.1 Hz")));
  EXPECT_NEAR(wrong.after->hum.value().level, wrong.before->hum->level, 0.1);
  request_.isDryRun = true;
  EXPECT_THAT(FormatLevels(RenderWith({"restoration.ReduceHum=5"})), Not(HasSubstr("none")));
}

TEST_F(RendererTest, AtFullNoiseReductionPausesFallByWhatIsAskedAndSpeechStays) {
  request_.look.mode = "dialog";
  WriteFile(
      folder_ / "in.wav",
      Make(44100, 2, 4.0, [noise = Noise(0.02), dark = 0.0](double time, int channel) mutable {
        dark += 0.14 * (noise(time, channel) - dark);  // falls by 6 dB an octave above 1 kHz
        const bool speaks = std::fmod(time, 2.0) < 1.0;
        return dark + (speaks ? Sine(0.2, 300)(time, 0) : 0.0);
      }));
  const AudioBlock in = ReadFile(folder_ / "in.wav");
  const AudioBlock out = Rendered({"restoration.ReduceNoise=10"});
  EXPECT_NEAR(RmsInDb(Between(out, 1.2, 1.9)) - RmsInDb(Between(in, 1.2, 1.9)), -24.0, 0.5);
  EXPECT_NEAR(RmsInDb(Between(out, 2.1, 2.9)) - RmsInDb(Between(in, 2.1, 2.9)), 0.0, 0.5);
}

TEST_F(RendererTest, AReverbRingsOnBehindTheInputAndAStretchedClipHasItsLength) {
  request_.look.mode = "dialog";
  WriteFile(folder_ / "in.wav", Make(44100, 2, 1.0, Noise(0.2)));
  // The church: 4.5 s, 1.3 times as long in the bass, behind 40 ms.
  EXPECT_NEAR(static_cast<double>(RenderWith({"soundeffects.ReverbPreset=1"}).frameCount) / 44100,
              1.0 + 0.04 + 1.5 * 4.5 * 1.3, 0.05);
  request_.look.mode = "music";
  EXPECT_EQ(RenderWith({"duration.TargetDuration=1.5"}).frameCount, 66150);
  EXPECT_EQ(
      RenderWith({"duration.TargetDuration=37.5", "duration.DurationDenominator=25"}).frameCount,
      66150);
  const RenderReport most = RenderWith({"duration.TargetDuration=9"});
  EXPECT_EQ(most.frameCount, 4 * 44100);
  EXPECT_THAT(most.notes, ElementsAre(HasSubstr("seconds long, not 9")));
}

TEST_F(RendererTest, MusicIsRemixedAndWhatHasNoBeatIsRefused) {
  request_.look.mode = "music";
  WriteFile(folder_ / "in.wav", Make(22050, 1, 40.0, ChordLoop()));
  const RenderReport report = RenderWith({"duration.TargetDuration=24", "duration.Mode=0"});
  EXPECT_NEAR(static_cast<double>(report.frameCount) / 22050, 24.0, 0.05);
  EXPECT_NEAR(report.after->loudness, report.before->loudness, 1.0);
  WriteFile(folder_ / "in.wav", Make(22050, 1, 5.0, Noise(0.1)));
  EXPECT_THROW(RenderWith({"duration.TargetDuration=4", "duration.Mode=0"}), AudioError);
}

TEST_F(RendererTest, AFailureLeavesTheOutputAsItWas) {
  WriteFile(folder_ / "in.wav", Make(44100, 2, 0.5, Noise(0.5)));
  WriteBytes(folder_ / "out.wav", "as it was");
  request_.progress = [](double done) { return done < 0.5; };
  EXPECT_THROW(RenderWith({}), AudioError);
  request_.progress = {};
  EXPECT_THROW(RenderWith({}, "in.wav"), AudioError) << "in the input's place";
  WriteBytes(folder_ / "in.wav", "no audio");
  EXPECT_THROW(RenderWith({}), AudioError);
  EXPECT_EQ(ReadBytes(folder_ / "out.wav"), "as it was");
  EXPECT_THAT(folder_.FileNames(), ElementsAre("in.wav", "out.wav"));
}

TEST_F(RendererTest, AnInputThatChangesMeanwhileIsAFailure) {
  WriteFile(folder_ / "in.wav", Make(44100, 2, 0.5, Noise(0.5)));
  request_.input = folder_ / "in.wav";
  request_.output = folder_ / "out.wav";
  const std::function<void()> changes[] = {
      [&] { std::filesystem::resize_file(folder_ / "in.wav", 60000); },
      [&] { std::filesystem::remove(folder_ / "in.wav"); },
  };
  for (const auto& change : changes) {
    request_.progress = [&](double done) {
      if (done > 0.2 && done < 0.3) change();
      return true;
    };
    EXPECT_THROW(Render(host_, request_), AudioError);
    EXPECT_THAT(folder_.FileNames(), ::testing::Not(::testing::Contains("out.wav")));
  }
}

}  // namespace
}  // namespace orvelhost::testing
