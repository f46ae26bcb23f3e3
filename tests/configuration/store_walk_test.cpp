// A seeded random walk over the store, the handlers and the configuration manager beside a plain
// model of what they promise. ORVEL_WALK_SEED walks one seed again, ORVEL_WALK_STEPS sets the
// length.

#include <algorithm>
#include <random>
#include <set>

#include "orvel/actions/action_executor.h"
#include "orvel/configuration/user_presets_handler.h"
#include "tests/support/configured_store.h"
#include "tests/support/environment.h"

namespace orvel::test {
namespace {

constexpr unsigned kSeeds = 12;
constexpr unsigned kStepsBetweenReopenings = 40;
const std::vector<std::string> kModes = {"dialog", "music", "sfx"};
const std::vector<std::string> kNames = {"Alpha", "Beta", "Gamma"};

float GainOf(const ConfigPreset& preset) {
  float gain = 0.0f;
  preset.PresetData.Models.at("model_volume").GetValue("MaxGain", gain);
  return gain;
}

float ValueOf(const UserPreset& preset) { return preset.PresetData.Models.at("model_volume")[1]; }

// One configuration preset as the model sees it: its gain stands for all its data.
struct Config {
  explicit Config(const ConfigPreset& preset)
      : name(preset.Name), mode(preset.PresetData.ModeID), gain(GainOf(preset)) {}
  bool operator==(const Config&) const = default;

  std::string name;
  std::string mode;
  float gain;
  std::map<std::string, float> users;  // by name
};

struct Current {
  Guid guid;
  float gain = 0.0f;
};

class SeededStoreWalk : public ConfiguredStore, public ::testing::WithParamInterface<unsigned> {
 protected:
  SeededStoreWalk() {
    for (const auto& [guid, config] : configs_) {
      factory_[config.mode] = guid;
      current_[config.mode] = {guid, config.gain};
    }
  }

  // What the store holds for the modes of the walk.
  static std::map<Guid, Config> Stored() {
    std::map<Guid, Config> stored;
    for (const auto& preset : ConfigsOf(Store())) {
      if (std::ranges::find(kModes, preset.PresetData.ModeID) == kModes.end()) continue;
      Config& config = stored.emplace(preset.Guid, preset).first->second;
      for (const auto& user : UsersOf(Store(), preset.Guid)) {
        config.users[user.Name] = ValueOf(user);
      }
    }
    return stored;
  }

  std::size_t Roll(std::size_t sides) { return random_() % sides; }
  float RollGain() { return static_cast<float>(Roll(5)); }
  template <typename List>
  auto& Pick(List& list) {
    return *std::next(list.begin(), static_cast<std::ptrdiff_t>(Roll(list.size())));
  }
  // With a guid that the seed gives, too.
  ConfigPreset MakeConfig(const std::string& name, const std::string& mode) {
    const Guid guid("00000000-0000-4000-8000-" + std::to_string(100'000'000'000 + ++made_));
    return MakeConfigPreset(name, mode, RollGain(), guid);
  }
  bool IsFactory(const Guid& guid) { return factory_[configs_.at(guid).mode] == guid; }
  bool IsTaken(const std::string& name, const std::string& mode) {
    return std::ranges::any_of(configs_, [&](const auto& entry) {
      return entry.second.name == name && entry.second.mode == mode && !IsFactory(entry.first);
    });
  }

  void Step() {
    using Walk = SeededStoreWalk;
    constexpr void (Walk::*kKinds[])() = {
        &Walk::CreateConfig, &Walk::SaveUser, &Walk::SaveUser,     &Walk::RemoveUser,
        &Walk::RemoveConfig, &Walk::Select,   &Walk::Edit,         &Walk::Revert,
        &Walk::Migrate,      &Walk::Refuse,   &Walk::OpenDocument, &Walk::OverwriteConfig};
    (this->*kKinds[Roll(std::size(kKinds))])();
  }

  void CreateConfig() {
    const auto preset = MakeConfig(Pick(kNames), Pick(kModes));
    const std::string& mode = preset.PresetData.ModeID;
    const bool isTaken = IsTaken(preset.Name, mode);
    EXPECT_EQ(Store().CreateConfigPreset(preset), !isTaken);
    if (isTaken) return;
    Config config(preset);
    if (temporaries_.erase(current_[mode].guid) > 0) {  // it takes its place
      config.users = configs_.at(current_[mode].guid).users;
      configs_.erase(current_[mode].guid);
      current_[mode] = {preset.Guid, config.gain};
    }
    configs_.emplace(preset.Guid, config);
  }

  void OverwriteConfig() {
    auto& [guid, config] = Pick(configs_);
    ConfigPreset preset;
    ASSERT_TRUE(Store().FindPreset(guid, preset));
    preset.PresetData.Models["model_volume"].SetValue("MaxGain", RollGain());
    if (!IsFactory(guid) && Roll(2) == 0) preset.Name = Pick(kNames);
    const bool isTaken = preset.Name != config.name && IsTaken(preset.Name, config.mode);
    EXPECT_EQ(Store().SavePreset(preset), !isTaken);
    if (isTaken) return;
    if (config.name != preset.Name) temporaries_.erase(guid);
    config.name = preset.Name;
    config.gain = GainOf(preset);
  }

  void SaveUser() {
    auto& [guid, config] = Pick(configs_);
    auto preset = MakeUserPreset(Pick(kNames), guid, RollGain());
    const auto users = UsersOf(Store(), guid);
    if (!users.empty() && Roll(2) == 0) {
      const auto& known = Pick(users);
      preset.Guid = known.Guid;
      config.users.erase(known.Name);
    }
    EXPECT_TRUE(Store().SavePreset(preset));
    config.users[preset.Name] = ValueOf(preset);
  }

  void RemoveUser() {
    auto& [guid, config] = Pick(configs_);
    const auto users = UsersOf(Store(), guid);
    if (users.empty()) return;
    const auto& user = Pick(users);
    EXPECT_TRUE(Store().RemovePreset(user.Guid, guid));
    config.users.erase(user.Name);
  }

  void RemoveConfig() {
    const Guid guid = Pick(configs_).first;
    if (IsFactory(guid)) return;
    EXPECT_TRUE(Store().RemoveConfigPreset(guid));
    Forget(guid);
  }

  void Forget(const Guid& guid) {
    configs_.erase(guid);
    temporaries_.erase(guid);
    for (auto& [mode, current] : current_) {
      if (current.guid == guid) current = {factory_[mode], configs_.at(factory_[mode]).gain};
    }
  }

  void Select() {
    const auto& [guid, config] = Pick(configs_);
    const std::string& mode = Pick(kModes);
    EXPECT_EQ(Handler(mode).Select(guid), mode == config.mode);
    if (mode == config.mode) current_[mode] = {guid, config.gain};
  }

  void Edit() {
    const std::string& mode = Pick(kModes);
    PropList list = GetModelConfiguration(mode, "model_volume");
    current_[mode].gain = RollGain();
    list.SetValue("MaxGain", current_[mode].gain);
    EXPECT_TRUE(Manager().SetModelConfiguration(mode, "model_volume", list));
  }

  // A verifier that refuses is asked about all but a document.
  void Refuse() {
    Manager().SetVerifyConfigurationChangeFunction([](const std::string&) { return false; });
    const auto& [guid, config] = Pick(configs_);
    EXPECT_FALSE(Handler(config.mode).Select(guid));
    EXPECT_FALSE(Manager().SetModelConfiguration(config.mode, "model_volume", Gain(9.0f)));
    Compare();
    OpenDocument();
    Manager().SetVerifyConfigurationChangeFunction({});
  }

  void Revert() {
    const std::string& mode = Pick(kModes);
    EXPECT_TRUE(Manager().RevertCurrentDirtyConfigForMode(mode));
    current_[mode].gain = configs_.at(current_[mode].guid).gain;
  }

  void Migrate() {
    const auto& [from, source] = Pick(configs_);
    auto& [to, target] = Pick(configs_);
    if (from == to || IsFactory(from)) return;
    EXPECT_TRUE(Store().MigrateUserPresets(from, to, true));
    for (const auto& [name, value] : source.users) target.users[name] = value;
  }

  void OpenDocument() {
    ConfigPresets document;
    for (const auto& mode : kModes) {
      if (Roll(3) == 0) continue;
      auto preset = MakeConfig("Show " + std::to_string(made_), mode);
      if (Roll(2) == 0) {
        const auto& [guid, config] = Pick(configs_);
        if (config.mode != mode || temporaries_.contains(guid)) continue;
        ASSERT_TRUE(Store().FindPreset(guid, preset));
        preset.PresetData.Models["model_volume"].SetValue("MaxGain", RollGain());
      }
      document.push_back(preset);
    }
    session_->Open(document);
    // What was saved under the templates of the document before is kept among the factory's.
    for (const auto& guid : std::set<Guid>(temporaries_)) {
      auto& kept = configs_.at(factory_[configs_.at(guid).mode]).users;
      for (const auto& [name, value] : configs_.at(guid).users) {
        std::string free = name;
        for (int i = 2; kept.contains(free); ++i) free = name + " " + std::to_string(i);
        kept[free] = value;
      }
      Forget(guid);
    }
    for (auto& [mode, current] : current_) current.gain = configs_.at(current.guid).gain;
    for (const auto& preset : document) {
      const auto [entry, isNew] = configs_.try_emplace(preset.Guid, preset);
      current_[entry->second.mode] = {preset.Guid, GainOf(preset)};
      if (!isNew) continue;
      entry->second.name += " (from Session)";
      temporaries_.insert(preset.Guid);
    }
  }

  // As after a crash: what was temporary and holds user presets stays, under its name.
  void Reopen() {
    Terminate();
    Start();
    for (const auto& guid : std::set<Guid>(temporaries_)) {
      Config& config = configs_.at(guid);
      if (!config.users.empty()) {
        temporaries_.erase(guid);
      } else if (current_[config.mode].guid == guid) {
        config.gain = current_[config.mode].gain;  // the document's becomes its stored data
      } else {
        Forget(guid);
      }
    }
  }

  void Compare() {
    EXPECT_TRUE(Stored() == configs_);
    std::vector<std::string> dirty;
    for (const auto& mode : kModes) {
      const Current& current = current_[mode];
      const Config& config = configs_.at(current.guid);
      EXPECT_EQ(Manager().GetCurrentConfigGuidForMode(mode), current.guid) << mode;
      const bool isDirty = current.gain != config.gain;
      EXPECT_EQ(Manager().IsCurrentConfigDirtyForMode(mode), isDirty) << mode;
      if (isDirty) dirty.push_back(mode);
      const auto held = std::ranges::find(
          session_->document, mode, [](const auto& preset) { return preset.PresetData.ModeID; });
      ASSERT_NE(held, session_->document.end()) << mode;
      EXPECT_EQ(held->Guid, current.guid) << mode;
      EXPECT_EQ(GainOf(*held), current.gain) << mode;
      // A template that came with a document keeps the document's name there.
      EXPECT_TRUE(held->Name + " (from Session)" == config.name ||
                  (held->Name == config.name && !temporaries_.contains(current.guid)));
      EXPECT_EQ(CreateUserPresetsHandler(mode)->GetPresetList().size(), config.users.size());
    }
    // They are offered until one says no.
    std::vector<std::string> offered;
    Manager().SetHandleDirtyConfigurationPresetFunction([&](const std::string& mode, auto&&) {
      offered.push_back(mode);
      return offered.size() < 2;
    });
    EXPECT_EQ(Manager().HandleDirtyConfigPresets(), dirty.size() < 2);
    Manager().SetHandleDirtyConfigurationPresetFunction({});
    EXPECT_TRUE(Manager().HandleDirtyConfigPresets()) << "nobody is asked";
    dirty.resize(std::min<std::size_t>(dirty.size(), 2));
    EXPECT_EQ(offered, dirty);
  }

  std::mt19937 random_{Asked("ORVEL_WALK_SEED", GetParam())};
  std::map<Guid, Config> configs_ = Stored();
  std::map<std::string, Guid> factory_;  // by mode
  std::set<Guid> temporaries_;           // those that came with the document
  std::map<std::string, Current> current_;
  std::uint64_t made_ = 0;
};

TEST_P(SeededStoreWalk, AgreesWithAPlainModel) {
  const unsigned steps = Asked("ORVEL_WALK_STEPS", 400);
  for (unsigned step = 0; step < steps && !HasFailure(); ++step) {
    SCOPED_TRACE("step " + std::to_string(step));
    Step();
    Compare();
    if (step % kStepsBetweenReopenings != 0) continue;
    const auto known = Describe(Store());
    Store().Reload();
    EXPECT_EQ(Describe(Store()), known) << "disk and memory agree";
    Reopen();
    Compare();
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, SeededStoreWalk, ::testing::Range(1u, 1 + kSeeds));

}  // namespace
}  // namespace orvel::test
