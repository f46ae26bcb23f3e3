#include "host/audio/audio_reader.h"

#include <cstdlib>
#include <limits>

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

/// Writes `block` in another format, as the ffmpeg program makes it by its options.
void Encode(const std::filesystem::path& path, const AudioBlock& block,
            const std::string& options) {
  const std::filesystem::path source = path.string() + ".source.wav";
  WriteFile(source, block);
  const std::string command = "ffmpeg -v error -nostdin -i '" + source.string() + "' " + options +
                              " '" + path.string() + "'";
  EXPECT_EQ(std::system(command.c_str()), 0) << command;  // NOLINT(cert-env33-c)
}

constexpr char kGreyFilm[] = "-f lavfi -i color=gray:s=64x48:d=0.2 -c:v mpeg4 ";

std::vector<std::string> NotesAfterReading(const std::filesystem::path& path) {
  AudioReader reader(path);
  AudioBlock block;
  while (reader.Read(block)) {
  }
  return reader.Notes();
}

TEST(AudioReader, ReadsEveryFormatAtItsRateAndInItsPlace) {
  struct Case {
    const char* name;
    const char* encoder;
    int sampleRate;
    int channelCount;
    double differenceInDb;  // how near the coding comes to the signal
    std::size_t mostPadding;
    const char* film = "";
  };
  // clang-format off
  const Case cases[] = {
      // name        encoder       rate    ch  difference  padding
      {"s16.wav",    "pcm_s16le",  44100,  1,   -90.0,        0},
      {"u8.wav",     "pcm_u8",      8000,  2,   -42.0,        0},
      {"s24.wav",    "pcm_s24le",  96000,  6,  -135.0,        0},
      {"f64.wav",    "pcm_f64le", 192000,  2,  -300.0,        0},
      {"be.aiff",    "pcm_s16be",  22050,  2,   -90.0,        0},
      {"a.flac",     "flac",       48000,  2,   -90.0,        0},
      {"a.mp3",      "libmp3lame", 44100,  2,   -30.0,        0},
      {"low.mp3",    "libmp3lame", 11025,  1,   -30.0,        0},
      {"vorbis.ogg", "libvorbis",  44100,  2,   -30.0,        0},
      {"opus.ogg",   "libopus",    48000,  2,   -30.0,        0},
      {"a.m4a",      "aac",        44100,  2,   -30.0,     1023},
      {"film.mkv",   "flac",       48000,  1,   -90.0,        0,  kGreyFilm},
      {"film.mp4",   "aac",        48000,  2,   -30.0,     1023,  kGreyFilm},
  };
  // clang-format on
  const TemporaryFolder folder;
  for (const Case& one : cases) {
    SCOPED_TRACE(one.name);
    const AudioBlock signal = Make(one.sampleRate, one.channelCount, 1.5, Sine(0.5, 1000.0));
    Encode(folder / one.name, signal, std::string(one.film) + "-c:a " + one.encoder);
    const AudioBlock read = ReadFile(folder / one.name);
    EXPECT_EQ(read.Format().sampleRate, one.sampleRate);
    ASSERT_EQ(read.ChannelCount(), one.channelCount);
    ASSERT_GE(read.FrameCount(), signal.FrameCount());
    EXPECT_LE(read.FrameCount(), signal.FrameCount() + one.mostPadding);
    // Coding smears the abrupt ends of the signal, so the mean decides. A shift by one sample would
    // make -27 dB or more.
    EXPECT_LT(RmsInDb(Difference(Between(read, 0.0, 1.5), signal)), one.differenceInDb);
    EXPECT_THAT(NotesAfterReading(folder / one.name), IsEmpty());
  }
}

TEST(AudioReader, ChannelsOfNoSpeakersStayWhatTheyAre) {
  const TemporaryFolder folder;
  const AudioBlock tracks = Make(48000, 3, 1.0, During(0.0, 1.0, Noise(0.1)));
  WriteFile(folder / "tracks.wav", tracks);
  const AudioBlock read = ReadFile(folder / "tracks.wav");
  EXPECT_EQ(read.Format(), tracks.Format()) << "the third one is no low frequency effect";
  Encode(folder / "ball.opus", tracks,
         "-f lavfi -i 'aevalsrc=0.5*sin(5000*t)|0.1|0|0:c=ambisonic 1:d=1' -map 1 -c:a libopus "
         "-mapping_family 2");
  EXPECT_EQ(ReadFile(folder / "ball.opus").ChannelCount(), 4);
}

TEST(AudioReader, RefusesWhatHoldsNoAudioAndSaysWhy) {
  const TemporaryFolder folder;
  const AudioBlock signal = Make(44100, 1, 0.1, Sine(0.5));
  WriteFile(folder / "good.wav", signal);
  WriteFile(folder / "good.flac", signal);
  Encode(folder / "silent.mkv", signal, std::string(kGreyFilm) + "-map 1");
  WriteBytes(folder / "empty.wav", "");
  WriteBytes(folder / "text.wav", "These are not the samples that you are looking for.\n");
  WriteBytes(folder / "head.wav", ReadBytes(folder / "good.wav").substr(0, 40));
  WriteBytes(folder / "head.flac", ReadBytes(folder / "good.flac").substr(0, 60));
  WriteFile(folder / "nothing.wav", Make(44100, 1, 0.0, Sine(0.5)));
  Encode(folder / "slow.wav", signal, "-ar 500");
  std::filesystem::create_directory(folder / "folder.wav");
  const std::pair<const char*, const char*> cases[] = {
      {"missing.wav", "No such file"}, {"folder.wav", "folder"},
      {"empty.wav", "empty"},          {"text.wav", "damaged"},
      {"head.wav", "damaged"},         {"head.flac", ""},
      {"silent.mkv", "no audio"},      {"nothing.wav", "empty"},
      {"slow.wav", "500 Hz"},          {"concat:good.wav", "No such file"},
  };
  for (const auto& [name, cause] : cases) {
    SCOPED_TRACE(name);
    const std::filesystem::path path = folder / name;
    EXPECT_THAT([&] { AudioReader reader(path); },
                ::testing::ThrowsMessage<AudioError>(
                    AllOf(HasSubstr(cause), HasSubstr(path.string()), Not(HasSubstr("\n")))));
  }
}

TEST(AudioReader, ReadsOnAfterDamageAndSaysSo) {
  const TemporaryFolder folder;
  const AudioBlock signal = Make(44100, 2, 1.0, Noise(0.5));
  WriteFile(folder / "good.flac", signal);
  std::string bytes = ReadBytes(folder / "good.flac");
  bytes.replace(bytes.size() / 2, 64, std::string(64, '\xaa'));
  WriteBytes(folder / "damaged.flac", bytes);
  EXPECT_GT(ReadFile(folder / "damaged.flac").FrameCount(), signal.FrameCount() / 2);
  EXPECT_THAT(NotesAfterReading(folder / "damaged.flac"), ElementsAre(HasSubstr("damaged")));
}

TEST(AudioReader, ReadsWhatIsThereOfAFileThatIsCutOffAndSaysSo) {
  const TemporaryFolder folder;
  const AudioBlock signal = Make(44100, 2, 1.0, Noise(0.5));
  for (const char* name : {"a.wav", "a.flac"}) {
    SCOPED_TRACE(name);
    WriteFile(folder / name, signal);
    const std::string bytes = ReadBytes(folder / name);
    WriteBytes(folder / name, bytes.substr(0, bytes.size() / 2));
    EXPECT_NEAR(static_cast<double>(ReadFile(folder / name).FrameCount()), 22050, 5000);
    EXPECT_THAT(NotesAfterReading(folder / name), ::testing::Contains(HasSubstr("cut off")));
  }
  // Cut between two samples, in one, and in the only one of a packet.
  Encode(folder / "s16.wav", signal, "-c:a pcm_s16le -fflags +bitexact");
  const std::string bytes = ReadBytes(folder / "s16.wav");
  const std::size_t data = bytes.find("data") + 8;
  for (const std::size_t kept : {40000u, 40001u, 3u * 4096 + 1}) {
    WriteBytes(folder / "s16.wav", bytes.substr(0, data + kept));
    EXPECT_THAT(NotesAfterReading(folder / "s16.wav"), ElementsAre(HasSubstr("cut off"))) << kept;
  }
  // A stream's header states no size.
  std::string stream = bytes;
  for (const std::size_t size : {std::size_t{4}, data - 4}) stream.replace(size, 4, 4, '\xff');
  WriteBytes(folder / "s16.wav", stream);
  EXPECT_THAT(NotesAfterReading(folder / "s16.wav"), IsEmpty());
}

TEST(AudioReader, ReadsSamplesThatAreNoNumberAsSilence) {
  const TemporaryFolder folder;
  AudioBlock signal = Make(44100, 1, 0.1, Sine(0.5));
  AudioBlock expected = signal;
  const float impossible[] = {std::numeric_limits<float>::quiet_NaN(),
                              std::numeric_limits<float>::infinity(), -1e30f};
  for (std::size_t index = 0; index < std::size(impossible); ++index) {
    signal.Channel(0)[100 * index] = impossible[index];
    expected.Channel(0)[100 * index] = 0.0f;
  }
  WriteFile(folder / "a.wav", signal);
  EXPECT_TRUE(HaveSameSamples(ReadFile(folder / "a.wav"), expected));
  EXPECT_THAT(NotesAfterReading(folder / "a.wav"), ElementsAre(HasSubstr("3 sample")));
}

TEST(AudioReader, GoesOnAtTheFirstRateAndChannelsWhenTheyChange) {
  const TemporaryFolder folder;
  Encode(folder / "a.mp3", Make(44100, 2, 0.5, Sine(0.5)), "");
  Encode(folder / "b.mp3", Make(22050, 1, 0.5, Sine(0.5)), "");
  WriteBytes(folder / "ab.mp3", ReadBytes(folder / "a.mp3") + ReadBytes(folder / "b.mp3"));
  const AudioBlock read = ReadFile(folder / "ab.mp3");
  EXPECT_EQ(read.Format(), ReadFile(folder / "a.mp3").Format());
  EXPECT_NEAR(static_cast<double>(read.FrameCount()), 44100, 6000);
}

}  // namespace
}  // namespace orvelhost::testing
