// Renders a recording with a full dialogue chain, by `orvel render` and by the `ffmpeg` command
// with the very same filters, in turns, and prints the ratio of their times; and a hundred files by
// one job and by two.

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <numbers>
#include <random>
#include <string>
#include <vector>

#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "bench/ratio.h"
#include "host/audio/audio_writer.h"
#include "host/catalogue/setting.h"
#include "host/session/clip.h"
#include "host/session/host.h"

namespace {

using namespace orvelhost;

// What of the chain has to be measured first stands last: without it the work is the filters alone.
const std::vector<std::string> kUnmeasured = {
    "restoration.ReduceSibilance=5", "restoration.ReduceRumble=7",
    "clarity.EQPreset=10",           "clarity.EQAmount=5",
    "clarity.VocalEnhancerMode=1",   "soundeffects.ReverbPreset=6",
    "soundeffects.AdjustReverb=2",   "volume.Volume=0"};
const std::vector<std::string> kMeasured = {"restoration.ReduceNoise=6", "restoration.ReduceHum=7",
                                            "restoration.HumFrequency=50",
                                            "clarity.DynamicsAmount=4"};

/// Bursts of a voice's tones over hum and noise.
void WriteRecording(const std::filesystem::path& path, double seconds) {
  constexpr int kRate = 48000;
  constexpr double kTurn = 2.0 * std::numbers::pi;
  AudioWriter writer(path, {kRate, 2, 3});
  std::mt19937 random(1);
  std::normal_distribution<float> noise(0.0f, 0.001f);
  AudioBlock block({kRate, 2, 3}, kRate);
  for (int second = 0; second < seconds; ++second) {
    for (std::size_t frame = 0; frame < block.FrameCount(); ++frame) {
      const double time = second + static_cast<double>(frame) / kRate;
      double voice = 0.003 * std::sin(kTurn * 50.0 * time);
      for (int partial = 1; partial <= 12 && std::fmod(time, 1.5) < 1.0; ++partial) {
        voice += 0.1 / partial * std::sin(kTurn * 140.0 * partial * time);
      }
      for (int channel = 0; channel < 2; ++channel) {
        block.Channel(channel)[frame] = static_cast<float>(voice) + noise(random);
      }
    }
    writer.Write(block);
  }
  writer.Commit();
}

std::string Options(const FilterSpec& spec) {
  std::string text = spec.filter;
  const char* mark = "=";
  for (const auto& [name, value] : spec.options) {
    text.append(mark).append(name).append("='").append(value).append("'");
    mark = ":";
  }
  return text;
}

/// The chain in the language of -filter_complex, from the pad `from` to the pad that is returned.
std::string Describe(const std::vector<FilterSpec>& filters, std::string from, int& pads,
                     std::string& text) {
  const auto pad = [&] { return "[p" + std::to_string(++pads) + "]"; };
  for (const FilterSpec& spec : filters) {
    if (spec.branches.empty()) {
      const std::string to = pad();
      text.append(from).append(Options(spec)).append(to).append(";\n");
      from = to;
      continue;
    }
    std::vector<std::string> inputs;
    text.append(from).append("asplit=").append(std::to_string(spec.branches.size()));
    for (std::size_t branch = 0; branch < spec.branches.size(); ++branch) {
      text.append(inputs.emplace_back(pad()));
    }
    text += ";\n";
    std::string ends;
    for (std::size_t branch = 0; branch < spec.branches.size(); ++branch) {
      ends += Describe(spec.branches[branch], inputs[branch], pads, text);
    }
    from = pad();
    text.append(ends).append("amix=normalize=0:inputs=");
    text.append(std::to_string(spec.branches.size())).append(from).append(";\n");
  }
  return from;
}

/// The filters that a render with these settings runs.
std::vector<FilterSpec> FiltersOf(const Host& host, const std::filesystem::path& input,
                                  const std::vector<std::string>& texts) {
  std::vector<Setting> settings;
  std::string error;
  if (!ParseSettings(texts, SettableSections("dialog"), settings, error)) {
    throw std::runtime_error(error);
  }
  const boost::intrusive_ptr<Clip> clip(new Clip("recording", {48000, 2, 3}));
  clip->SetMeasurer([&] { clip->SetMeasurement(MeasureClip(OpenerOf(input), false)); });
  const auto models = ApplySettings(std::nullopt, settings, "dialog", host, clip);
  return ChainFilters(clip->Chain(), ContextOf(clip->Format(), clip->Measurement()));
}

struct Times {
  double wall;
  double processor;
};

Times Run(std::vector<std::string> words) {
  std::vector<char*> arguments;
  arguments.reserve(words.size() + 1);
  for (std::string& word : words) {
    arguments.push_back(word.data());
  }
  arguments.push_back(nullptr);
  timespec begin{};
  timespec end{};
  clock_gettime(CLOCK_MONOTONIC, &begin);
  pid_t child = 0;
  int status = 0;
  rusage usage{};
  if (posix_spawnp(&child, arguments[0], nullptr, nullptr, arguments.data(), environ) != 0 ||
      wait4(child, &status, 0, &usage) != child || status != 0) {
    throw std::runtime_error("cannot run " + words.front());
  }
  clock_gettime(CLOCK_MONOTONIC, &end);
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
  };
  return {static_cast<double>(end.tv_sec - begin.tv_sec) +
              1e-9 * static_cast<double>(end.tv_nsec - begin.tv_nsec),
          seconds(usage.ru_utime) + seconds(usage.ru_stime)};
}

void Compare(const char* name, double promised, const Host& host,
             const std::filesystem::path& folder, const std::vector<std::string>& settings,
             int turns) {
  const std::string input = folder / "in.wav";
  const std::string script = folder / "filters.txt";
  std::string text;
  int pads = 0;
  const std::string last = Describe(FiltersOf(host, input, settings), "[0:a]", pads, text);
  std::ofstream(script) << text << last << "anull[out]";

  std::vector<std::string> ours = {ORVEL_CLI, "render", input, "-o",    folder / "ours.wav",
                                   "-f",      "-q",     "-m",  "dialog"};
  for (const std::string& setting : settings) {
    ours.insert(ours.end(), {"-s", setting});
  }
  const std::vector<std::string> theirs = {"ffmpeg",    "-nostdin",
                                           "-v",        "error",
                                           "-y",        "-i",
                                           input,       "-filter_complex_script",
                                           script,      "-map",
                                           "[out]",     "-c:a",
                                           "pcm_f32le", folder / "theirs.wav"};
  std::vector<double> wall;
  std::vector<double> processor;
  for (int turn = 0; turn < turns; ++turn) {
    const Times our = Run(ours);
    const Times their = Run(theirs);
    wall.push_back(our.wall / their.wall);
    processor.push_back(our.processor / their.processor);
    std::cout << name << ": orvel " << our.wall << " s, of a processor " << our.processor
              << " s; ffmpeg " << their.wall << " s, " << their.processor << " s\n";
  }
  std::cout << name << ", median of orvel's time over ffmpeg's: " << bench::Median(wall)
            << std::endl;
  bench::PrintRatio((std::string("render, ") + name).c_str(), "ffmpeg, processor time",
                    bench::Median(processor), promised);
}

std::string Bytes(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

/// A hundred files by one job and by two, in turns. Raises when a byte differs.
void CompareJobs(const std::filesystem::path& folder, double seconds, int turns) {
  constexpr int kFiles = 100;
  const std::filesystem::path inputs = folder / "inputs";
  std::filesystem::create_directory(inputs);
  for (int file = 0; file < kFiles; ++file) {
    WriteRecording(inputs / (std::to_string(file) + ".wav"), seconds + file % 3);
  }
  const auto render = [&](const std::string& jobs) {
    std::vector<std::string> words = {ORVEL_CLI, "render", inputs,   "-o",     folder / jobs,
                                      "-fq",     "-m",     "dialog", "--jobs", jobs};
    for (const auto* settings : {&kUnmeasured, &kMeasured}) {
      for (const std::string& setting : *settings) words.insert(words.end(), {"-s", setting});
    }
    return Run(words).wall;
  };
  std::vector<double> wall;
  for (int turn = 0; turn < turns; ++turn) {
    const double one = render("1");
    const double two = render("2");
    wall.push_back(two / one);
    std::cout << "a hundred files: one job " << one << " s, two jobs " << two << " s\n";
  }
  for (const auto& entry : std::filesystem::directory_iterator(folder / "1")) {
    if (Bytes(entry.path()) != Bytes(folder / "2" / entry.path().filename())) {
      throw std::runtime_error("two jobs made another " + entry.path().filename().string());
    }
  }
  bench::PrintRatio("render, a hundred files by two jobs", "by one job", bench::Median(wall), 0.6);
}

}  // namespace

int main(int argc, char** argv) {
  const double seconds = argc > 1 ? std::atof(argv[1]) : 120.0;
  const int turns = argc > 2 ? std::atoi(argv[2]) : 5;
  std::string name = (std::filesystem::temp_directory_path() / "orvel-bench-XXXXXX").string();
  const std::filesystem::path folder = mkdtemp(name.data());
  int status = 0;
  try {
    const Host host;
    WriteRecording(folder / "in.wav", seconds);
    std::vector<std::string> all = kUnmeasured;
    all.insert(all.end(), kMeasured.begin(), kMeasured.end());
    Compare("filters alone", 1.05, host, folder, kUnmeasured, turns);
    Compare("measured, then filtered", 0.0, host, folder, all, turns);
    CompareJobs(folder, seconds / 20, turns);
  } catch (const std::exception& error) {
    std::cerr << error.what() << "\n";
    status = 1;
  }
  std::filesystem::remove_all(folder);
  return status;
}
