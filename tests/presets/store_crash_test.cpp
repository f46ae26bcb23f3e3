// A process that changes the preset folder is killed at any instant. What it had reported as done
// is there afterwards, and nothing is broken.

#include <algorithm>
#include <random>
#include <set>

#include <gtest/gtest.h>
#include <unistd.h>

#include "tests/support/environment.h"
#include "tests/support/kill_while.h"
#include "tests/support/preset_store.h"
#include "tests/support/small_factory.h"

namespace orvel::test {
namespace {

namespace fs = std::filesystem;

using Random = std::mt19937;

void Change(PresetsCache& cache, Random& random) {
  static const std::vector<std::string> names = {
      "Voice", "voice", "a/b:c", "..", "CON", "Voice 2 ", "\U0001F3A7", std::string(300, 'x')};
  ChangeAny(
      cache, [&random](std::size_t sides) { return random() % sides; },
      [&random] { return names[random() % names.size()]; });
}

std::set<std::string> PresetsOf(const PresetsCache& cache) {
  const auto presets = Describe(cache);
  return {presets.begin(), presets.end()};
}

// Each preset is as before the change that was under way, or as after it.
void ExpectKept(const std::set<std::string>& before, const std::set<std::string>& after,
                const std::set<std::string>& found) {
  EXPECT_GE(found.size(), std::min(before.size(), after.size()));
  std::set<std::string> either = before;
  for (const auto& preset : after) {
    EXPECT_TRUE(either.insert(preset).second || found.contains(preset)) << "lost: " << preset;
  }
  EXPECT_TRUE(std::ranges::includes(either, found)) << "what nobody saved";
}

class StoreCrashTest : public PresetStore {
 protected:
  static Cache OpenSmall() { return new PresetsCache(SmallFactory(), true); }

  void ExpectNothingIsBroken(PresetsCache& cache) {
    EXPECT_FALSE(WasTraced("Skipping"));
    EXPECT_FALSE(WasTraced("Error"));
    const auto files = Snapshot(Root());
    for (const auto& [name, text] : files) {
      EXPECT_TRUE(name.ends_with(".orvel") || text == "folder") << name << " is left of the crash";
    }
    cache.Reload();
    EXPECT_EQ(Snapshot(Root()), files) << "reloading is no change";
    EXPECT_EQ(std::distance(fs::directory_iterator(Root().parent_path()), {}), 1);
  }
};

TEST_F(StoreCrashTest, AKilledProcessLosesNothingThatItHadReportedSaved) {
  const unsigned kills = Asked("ORVEL_KILLS", 300);
  std::size_t interrupted = 0;
  auto cache = OpenSmall();
  // Without the folder the factory's would come back.
  fs::create_directory(Root() / "Default/kept");
  // The same changes of a copy, which nobody kills, say what must be there.
  const TempDir other;
  Dir::SetPrefDir(other.AsDir());
  const auto twin = OpenSmall();
  Dir::SetPrefDir(folder_.AsDir());
  const fs::path twinRoot = other.Path() / "Presets" / "Orvel";
  for (unsigned seed = 0; seed < kills && !HasFailure(); ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    fs::remove_all(twinRoot);
    fs::copy(Root(), twinRoot, fs::copy_options::recursive);
    twin->Reload();
    Random random(seed);
    std::size_t reports = 0;  // one when a change begins, one when it is done
    char report = 0;
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    KillWhile(
        [&] {
          while (write(ends[1], &report, 1) == 1 && (Change(*cache, random), true) &&
                 write(ends[1], &report, 1) == 1) {
          }
        },
        [&] {
          close(ends[1]);
          Random instant(~seed);
          const std::size_t enough = instant() % 40;
          while (reports < enough && read(ends[0], &report, 1) == 1) ++reports;
          for (auto spin = instant() % 60000; spin > 0; --spin) instant();
        });
    while (read(ends[0], &report, 1) == 1) ++reports;
    close(ends[0]);
    for (std::size_t done = 0; done < reports / 2; ++done) Change(*twin, random);
    const auto before = PresetsOf(*twin);
    if (reports % 2 == 1) Change(*twin, random);
    traces_.clear();
    cache = OpenSmall();
    ExpectKept(before, PresetsOf(*twin), PresetsOf(*cache));
    ExpectNothingIsBroken(*cache);
    interrupted += reports % 2;
  }
  EXPECT_GT(interrupted, kills / 4) << "the kills come between the steps";
}

TEST_F(StoreCrashTest, AFactoryFolderThatACrashCutShortIsMadeWholeAtTheNextStart) {
  const auto whole = Describe(*Open());
  const auto count = [this] {
    std::error_code error;
    fs::recursive_directory_iterator at(Root().parent_path(), error);
    std::size_t entries = 0;
    for (; !error && at != fs::recursive_directory_iterator(); at.increment(error)) ++entries;
    return entries;
  };
  const std::size_t all = count();
  Random random(20261121);
  for (int kill = 0; kill < 40 && !HasFailure(); ++kill) {
    fs::remove_all(Root().parent_path());
    const std::size_t instant = random() % all;
    SCOPED_TRACE("killed when there were " + std::to_string(instant) + " files and folders");
    KillWhile([] { Open(); },
              [&] {
                while (count() < instant) {
                }
              });
    const auto cache = Open();
    EXPECT_EQ(Describe(*cache), whole);
    ExpectNothingIsBroken(*cache);
  }
}

}  // namespace
}  // namespace orvel::test
