// A process that changes the preset folder is killed at any instant. What it had reported as done
// is there afterwards, and nothing is broken.

#include <cstdio>
#include <random>

#include <gtest/gtest.h>
#include <unistd.h>

#include "tests/support/kill_while.h"
#include "tests/support/preset_store.h"
#include "tests/support/small_factory.h"

namespace orvel::test {
namespace {

namespace fs = std::filesystem;

using Random = std::mt19937;

const std::vector<std::string> kNames = {"Voice", "voice",    "a/b:c",      "..",
                                         "CON",   "Voice 2 ", "\U0001F3A7", std::string(300, 'x')};

struct Known {
  Guid config;  // the template of a user preset; null for a template
  std::string name;
  std::string text;
  bool operator==(const Known&) const = default;
};
using Model = std::map<Guid, Known>;

enum class Kind { kSaveUser, kRemoveUser, kSaveConfig, kRemoveConfig };

// Goes through the pipe twice: when it begins, and when it is done.
struct Step {
  Kind kind{};
  bool isDone = false;
  Guid guid{};
  Guid config{};
  std::size_t name = 0;
  float value = 0.0f;
};

Preset<UserPresetData> UserOf(const Step& step) {
  auto preset = MakeUserPreset(kNames[step.name], step.config, step.value);
  preset.Guid = step.guid;
  return preset;
}

Preset<ConfigPresetData> ConfigOf(const Step& step) {
  auto preset = MakeConfigPreset(kNames[step.name], "dialog", step.value);
  preset.Guid = step.guid;
  return preset;
}

template <typename T>
void Note(const Preset<T>& preset, const Guid& config, Model& model) {
  Known& known = model[preset.Guid];
  known = {config, preset.Name, ""};
  EXPECT_TRUE(WritePreset(preset, known.text));
}

Model ModelOf(const PresetsCache& cache) {
  Model model;
  ConfigPresets configs;
  cache.GetPresets(configs);
  for (const auto& config : configs) {
    Note(config, Guid(), model);
    UserPresets users;
    cache.GetUserPresetsForConfig(config.Guid, users);
    for (const auto& user : users) Note(user, config.Guid, model);
  }
  return model;
}

void Apply(const Step& step, Model& model) {
  const auto isReplaced = [&step](const auto& entry) {
    return entry.second.config == step.config && entry.second.name == kNames[step.name];
  };
  switch (step.kind) {
    case Kind::kSaveUser:
      std::erase_if(model, isReplaced);
      return Note(UserOf(step), step.config, model);
    case Kind::kSaveConfig:
      return Note(ConfigOf(step), Guid(), model);
    case Kind::kRemoveConfig:
      std::erase_if(model, [&step](const auto& entry) { return entry.second.config == step.guid; });
      [[fallthrough]];
    case Kind::kRemoveUser:
      model.erase(step.guid);
  }
}

bool Perform(const Step& step, PresetsCache& cache) {
  switch (step.kind) {
    case Kind::kSaveUser:
      return cache.SavePreset(UserOf(step));
    case Kind::kRemoveUser:
      return cache.RemovePreset(step.guid);
    case Kind::kSaveConfig:
      return cache.SavePreset(ConfigOf(step));
    case Kind::kRemoveConfig:
      return cache.RemoveConfigPreset(step.guid);
  }
  return false;
}

Guid MakeGuid(Random& random) {
  char text[37];
  std::snprintf(text, sizeof text, "%08x-0000-4000-8000-%012x", static_cast<unsigned>(random()),
                static_cast<unsigned>(random()));
  return Guid(text);
}

// A step that a sound store does not refuse.
Step Choose(Random& random, const Model& model) {
  const auto one = [&random](const std::vector<Guid>& of) { return of[random() % of.size()]; };
  std::vector<Guid> mine;
  std::vector<std::size_t> freeNames;
  for (const auto& [guid, known] : model) {
    if (known.config.IsNull() && !known.name.starts_with("$$$")) mine.push_back(guid);
  }
  for (std::size_t name = 0; name < kNames.size(); ++name) {
    const bool isTaken = std::any_of(mine.begin(), mine.end(), [&](const Guid& guid) {
      return model.at(guid).name == kNames[name];
    });
    if (!isTaken) freeNames.push_back(name);
  }
  const auto value = static_cast<float>(random() % 1000) / 8.0f;
  const auto dice = random() % 20;
  if (dice == 0 && !mine.empty()) return {.kind = Kind::kRemoveConfig, .guid = one(mine)};
  if (dice < 4) {
    Step step{.kind = Kind::kSaveConfig, .guid = MakeGuid(random), .value = value};
    step.name = freeNames[random() % freeNames.size()];
    if (mine.size() == 4) step.guid = one(mine);
    return step;
  }
  mine.push_back(kDialogTemplate);
  Step step{.kind = Kind::kSaveUser, .config = one(mine), .value = value};
  std::vector<Guid> users;
  step.name = random() % kNames.size();
  for (const auto& [guid, known] : model) {
    if (known.config == step.config) users.push_back(guid);
  }
  step.guid = users.empty() || dice % 2 == 0 ? MakeGuid(random) : one(users);
  if (users.size() > 5 && dice < 12) step = {.kind = Kind::kRemoveUser, .guid = one(users)};
  return step;
}

[[noreturn]] void ChangeUntilKilled(PresetsCache& cache, Random random, int pipe) {
  Model model = ModelOf(cache);
  for (;;) {
    Step step = Choose(random, model);
    if (write(pipe, &step, sizeof step) != sizeof step || !Perform(step, cache)) _exit(1);
    Apply(step, model);
    step.isDone = true;
    if (write(pipe, &step, sizeof step) != sizeof step) _exit(1);
  }
}

// Reads at most `count` reports and brings `model` to what they say. A step that was only begun
// stays in `open`.
void Follow(int pipe, std::size_t count, Model& model, std::vector<Step>& open) {
  Step step;
  while (count-- > 0 && read(pipe, &step, sizeof step) == sizeof step) {
    open.clear();
    if (step.isDone) {
      Apply(step, model);
    } else {
      open.push_back(step);
    }
  }
}

class StoreCrashTest : public PresetStore {
 protected:
  // As a person does whose save was cut short. Two presets may bear the name until then.
  static void Repeat(const Step& save, PresetsCache& cache) {
    for (const auto& preset : UsersOf(cache, save.config)) {
      if (preset.Name == kNames[save.name] && preset.Guid != save.guid) {
        EXPECT_TRUE(cache.RemovePreset(preset.Guid));
      }
    }
    EXPECT_TRUE(cache.SavePreset(UserOf(save)));
  }

  void ExpectNothingIsBroken(PresetsCache& cache) {
    EXPECT_FALSE(WasTraced("Skipping"));
    EXPECT_FALSE(WasTraced("Error"));
    const auto files = Snapshot();
    for (const auto& [name, text] : files) {
      EXPECT_TRUE(name.ends_with(".orvel")) << name << " is left of the crash";
    }
    cache.Reload();
    EXPECT_EQ(Snapshot(), files) << "reloading is no change";
    EXPECT_EQ(std::distance(fs::directory_iterator(Root().parent_path()), {}), 1);
  }
};

// Each preset is as before the step that was under way, or as after it.
void ExpectKept(const Model& before, const std::vector<Step>& open, const Model& found) {
  Model after = before;
  for (const auto& step : open) Apply(step, after);
  Model all = before;
  all.insert(after.begin(), after.end());
  for (const auto& [guid, known] : all) {
    const auto isHeld = [&found, &guid = guid](const Model& model) {
      const auto wanted = model.find(guid);
      const auto held = found.find(guid);
      if (wanted == model.end() || held == found.end())
        return wanted == model.end() && held == found.end();
      return wanted->second == held->second;
    };
    EXPECT_TRUE(isHeld(before) || isHeld(after))
        << "was: " << known.text
        << "\nis: " << (found.contains(guid) ? found.at(guid).text : "lost");
  }
  for (const auto& [guid, known] : found) {
    EXPECT_TRUE(all.contains(guid)) << "nobody saved " << known.text;
  }
}

TEST_F(StoreCrashTest, AKilledProcessLosesNothingThatItHadReportedSaved) {
  constexpr unsigned kKills = 300;
  constexpr unsigned kSeed = 20261121;
  std::size_t interrupted = 0;
  const auto open = []() -> Cache { return new PresetsCache(SmallFactory(), true); };
  auto cache = open();
  for (unsigned kill = 0; kill < kKills && !HasFailure(); ++kill) {
    SCOPED_TRACE("seed " + std::to_string(kSeed + kill));
    Random random(kSeed + kill);
    Model model = ModelOf(*cache);
    std::vector<Step> begun;
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    KillWhile([&] { ChangeUntilKilled(*cache, random, ends[1]); },
              [&] {
                close(ends[1]);
                Random instant(~(kSeed + kill));
                Follow(ends[0], instant() % 40, model, begun);
                for (auto spin = instant() % 60000; spin > 0; --spin) instant();
              });
    Follow(ends[0], SIZE_MAX, model, begun);
    close(ends[0]);
    traces_.clear();
    cache = open();
    ExpectKept(model, begun, ModelOf(*cache));
    ExpectNothingIsBroken(*cache);
    if (!begun.empty() && begun[0].kind == Kind::kSaveUser) Repeat(begun[0], *cache);
    interrupted += begun.size();
  }
  EXPECT_GT(interrupted, kKills / 4) << "the kills come between the steps";
}

TEST_F(StoreCrashTest, AFactoryFolderThatACrashCutShortIsMadeWholeAtTheNextStart) {
  const auto whole = PresetStore::Describe(*Open());
  const auto count = [this] {
    std::error_code error;
    std::size_t entries = 0;
    for (fs::recursive_directory_iterator at(Root().parent_path(), error), end; !error && at != end;
         at.increment(error)) {
      ++entries;
    }
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
    EXPECT_EQ(PresetStore::Describe(*cache), whole);
    ExpectNothingIsBroken(*cache);
  }
}

}  // namespace
}  // namespace orvel::test
