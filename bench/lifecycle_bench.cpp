// Starts and stops the library over a preset folder as it is after the first start, beside
// nlohmann::json, which only reads the bytes of the same files and of the modes' document and
// parses them. Prints the ratio.

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "bench/ratio.h"
#include "orvel/orvel.h"

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr int kTurns = 501;

template <typename Work>
double MicrosecondsOf(Work work) {
  const auto start = Clock::now();
  work();
  return std::chrono::duration<double, std::micro>(Clock::now() - start).count();
}

void StartAndStop() {
  orvel::Initialize(nullptr, nullptr, orvel::GetDefaultAdjustmentsModeDescriptors());
  orvel::Terminate();
}

std::string ReadFile(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  std::string bytes(fs::file_size(file), '\0');
  stream.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  return bytes;
}

}  // namespace

int main() {
  const fs::path folder =
      fs::temp_directory_path() / ("orvel-bench-" + orvel::Guid::CreateUnique().AsUTF8String());
  orvel::Dir::SetPrefDir(orvel::Dir(folder.u16string()));
  StartAndStop();  // makes the folder
  std::vector<fs::path> files;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    if (entry.is_regular_file()) files.push_back(entry.path());
  }
  const std::string modes = ReadFile(ORVEL_BENCH_MODES);

  std::vector<double> ours;
  std::vector<double> parsing;
  std::size_t members = 0;
  for (int turn = 0; turn < kTurns; ++turn) {
    ours.push_back(MicrosecondsOf(StartAndStop));
    parsing.push_back(MicrosecondsOf([&] {
      members += nlohmann::json::parse(modes).size();
      for (const auto& file : files) members += nlohmann::json::parse(ReadFile(file)).size();
    }));
  }
  fs::remove_all(folder);
  std::printf("Start and stop %.0f us, %zu files and the modes by nlohmann::json %.0f us\n",
              bench::Median(ours), files.size(), bench::Median(parsing));
  bench::PrintRatio("library start and stop", "nlohmann::json, same files",
                    bench::Median(ours) / bench::Median(parsing), 0.0);
  return members == 0 ? 1 : 0;
}
