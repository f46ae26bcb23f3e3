// A seeded random walk over the store, the handlers and the configuration manager beside a plain
// model of what they promise.

#include <algorithm>
#include <random>

#include "orvel/actions/action_executor.h"
#include "tests/support/configured_store.h"

namespace orvel::test {
namespace {

constexpr unsigned kSeeds = 12;
constexpr int kSteps = 400;
constexpr int kStepsBetweenReopenings = 40;
const std::vector<std::string> kModes = {"dialog", "music", "sfx"};
const std::vector<std::string> kNames = {"Alpha", "Beta", "Gamma"};

float GainOf(const ConfigPresetData& data) {
  float gain = 0.0f;
  data.Models.at("model_volume").GetValue("MaxGain", gain);
  return gain;
}

float ValueOf(const UserPreset& preset) { return preset.PresetData.Models.at("model_volume")[1]; }

// One configuration preset as the model sees it: its gain stands for all its data.
struct Config {
  explicit Config(const ConfigPreset& preset)
      : guid(preset.Guid),
        name(preset.Name),
        mode(preset.PresetData.ModeID),
        gain(GainOf(preset.PresetData)) {}

  Guid guid;
  std::string name;
  std::string mode;
  float gain;
  bool isFactory = false;
  bool isTemporary = false;
  std::map<std::string, float> users;  // by name
};

struct Current {
  Guid guid;
  float gain = 0.0f;
};

class SeededStoreWalk : public ConfiguredStore, public ::testing::WithParamInterface<unsigned> {
 protected:
  void Walk(unsigned seed) {
    random_.seed(seed);
    for (auto& [guid, config] : Stored()) {
      config.isFactory = true;
      configs_.push_back(config);
      current_[config.mode] = {guid, config.gain};
    }
    for (int step = 0; step < kSteps && !HasFailure(); ++step) {
      SCOPED_TRACE("step " + std::to_string(step));
      Step();
      Compare();
      if (step % kStepsBetweenReopenings == 0) {
        const auto known = Describe(Store());
        Store().Reload();
        EXPECT_EQ(Describe(Store()), known) << "disk and memory agree";
        Reopen();
        Compare();
      }
    }
  }

 private:
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

  int Roll(int sides) { return std::uniform_int_distribution<int>(0, sides - 1)(random_); }
  float RollGain() { return static_cast<float>(Roll(5)); }
  template <typename List>
  auto& Pick(List& list) {
    return *std::next(list.begin(), Roll(static_cast<int>(list.size())));
  }
  Config* Find(const Guid& guid) {
    const auto found = std::ranges::find(configs_, guid, &Config::guid);
    return found == configs_.end() ? nullptr : &*found;
  }
  Config& Factory(const std::string& mode) {
    return *std::ranges::find_if(
        configs_, [&mode](const Config& c) { return c.isFactory && c.mode == mode; });
  }

  void Step() {
    constexpr void (SeededStoreWalk::*kKinds[])() = {
        &SeededStoreWalk::CreateConfig, &SeededStoreWalk::SaveUser,
        &SeededStoreWalk::SaveUser,     &SeededStoreWalk::RemoveUser,
        &SeededStoreWalk::RemoveConfig, &SeededStoreWalk::Select,
        &SeededStoreWalk::Edit,         &SeededStoreWalk::Revert,
        &SeededStoreWalk::Migrate,      &SeededStoreWalk::OpenDocument,
        &SeededStoreWalk::Refuse,       &SeededStoreWalk::RenameOrOverwriteConfig};
    (this->*kKinds[Roll(std::size(kKinds))])();
  }

  void CreateConfig() {
    const auto preset = MakeConfigPreset(Pick(kNames), Pick(kModes), RollGain());
    const std::string& mode = preset.PresetData.ModeID;
    const bool isTaken = IsTaken(preset.Name, mode);
    EXPECT_EQ(Store().CreateConfigPreset(preset), !isTaken);
    if (isTaken) return;
    Config config(preset);
    const Config* replaced = Find(current_[mode].guid);
    if (replaced->isTemporary) {
      config.users = replaced->users;
      std::erase_if(configs_, [&](const Config& c) { return c.guid == current_[mode].guid; });
      current_[mode] = {config.guid, config.gain};
    }
    configs_.push_back(config);
  }

  bool IsTaken(const std::string& name, const std::string& mode) const {
    return std::ranges::any_of(configs_, [&](const Config& c) {
      return c.name == name && c.mode == mode && !c.isFactory;
    });
  }

  void RenameOrOverwriteConfig() {
    Config& config = Pick(configs_);
    ConfigPreset preset;
    ASSERT_TRUE(Store().FindPreset(config.guid, preset));
    preset.PresetData.Models["model_volume"].SetValue("MaxGain", RollGain());
    if (!config.isFactory && Roll(2) == 0) preset.Name = Pick(kNames);
    const bool isTaken = preset.Name != config.name && IsTaken(preset.Name, config.mode);
    EXPECT_EQ(Store().SavePreset(preset), !isTaken);
    if (isTaken) return;
    if (config.name != preset.Name) config.isTemporary = false;
    config.name = preset.Name;
    config.gain = GainOf(preset.PresetData);
  }

  void SaveUser() {
    Config& config = Pick(configs_);
    UserPreset preset = MakeUserPreset(Pick(kNames), config.guid, RollGain());
    const auto users = UsersOf(Store(), config.guid);
    if (!users.empty() && Roll(2) == 0) {
      const auto& known = Pick(users);
      preset.Guid = known.Guid;
      config.users.erase(known.Name);
    }
    EXPECT_TRUE(Store().SavePreset(preset));
    config.users[preset.Name] = ValueOf(preset);
  }

  void RemoveUser() {
    Config& config = Pick(configs_);
    const auto users = UsersOf(Store(), config.guid);
    if (users.empty()) return;
    const auto& user = Pick(users);
    EXPECT_TRUE(Store().RemovePreset(user.Guid, config.guid));
    config.users.erase(user.Name);
  }

  void RemoveConfig() {
    const Config config = Pick(configs_);
    if (config.isFactory) return;
    EXPECT_TRUE(Store().RemoveConfigPreset(config.guid));
    Forget(config.guid);
  }

  void Forget(const Guid& guid) {
    std::erase_if(configs_, [&guid](const Config& c) { return c.guid == guid; });
    for (auto& [mode, current] : current_) {
      if (current.guid == guid) current = {Factory(mode).guid, Factory(mode).gain};
    }
  }

  // What was saved under a document's template is kept among the factory's.
  void Rescue(const Config& temporary) {
    auto& kept = Factory(temporary.mode).users;
    for (const auto& [name, value] : temporary.users) {
      std::string free = name;
      for (int number = 2; kept.contains(free); ++number)
        free = name + " " + std::to_string(number);
      kept[free] = value;
    }
  }

  void Select() {
    const Config& config = Pick(configs_);
    const std::string& mode = Pick(kModes);
    EXPECT_EQ(Handler(mode).Select(config.guid), mode == config.mode);
    if (mode == config.mode) current_[mode] = {config.guid, config.gain};
  }

  void Edit() {
    const std::string& mode = Pick(kModes);
    PropList list = GetModelConfiguration(mode, "model_volume");
    const float gain = RollGain();
    list.SetValue("MaxGain", gain);
    EXPECT_TRUE(Manager().SetModelConfiguration(mode, "model_volume", list));
    current_[mode].gain = gain;
  }

  // A verifier that refuses is asked about all but a document.
  void Refuse() {
    Manager().SetVerifyConfigurationChangeFunction([](const std::string&) { return false; });
    const Config& config = Pick(configs_);
    EXPECT_FALSE(Handler(config.mode).Select(config.guid));
    EXPECT_FALSE(Manager().SetModelConfiguration(config.mode, "model_volume", Gain(9.0f)));
    Compare();
    OpenDocument();
    Manager().SetVerifyConfigurationChangeFunction({});
  }

  void Revert() {
    const std::string& mode = Pick(kModes);
    const bool wasDirty = Manager().IsCurrentConfigDirtyForMode(mode);
    EXPECT_TRUE(Manager().RevertCurrentDirtyConfigForMode(mode));
    if (!wasDirty) return;
    current_[mode].gain = Find(current_[mode].guid)->gain;
  }

  void Migrate() {
    Config& from = Pick(configs_);
    Config& to = Pick(configs_);
    if (from.guid == to.guid || from.isFactory) return;
    EXPECT_TRUE(Store().MigrateUserPresets(from.guid, to.guid, true));
    for (const auto& [name, value] : from.users) to.users[name] = value;
  }

  void OpenDocument() {
    std::vector<Guid> temporaries;
    for (const auto& config : configs_) {
      if (config.isTemporary) temporaries.push_back(config.guid);
    }
    ConfigPresets document;
    for (const auto& mode : kModes) {
      if (Roll(3) == 0) continue;
      auto preset = MakeConfigPreset("Show " + std::to_string(++shows_), mode);
      if (Roll(2) == 0) {
        const Config& known = Pick(configs_);
        if (known.mode != mode || known.isTemporary) continue;
        ASSERT_TRUE(Store().FindPreset(known.guid, preset));
      }
      preset.PresetData.Models["model_volume"].SetValue("MaxGain", RollGain());
      document.push_back(preset);
    }
    session_->Open(document);
    for (const auto& guid : temporaries) Rescue(*Find(guid));
    for (const auto& guid : temporaries) Forget(guid);
    for (const auto& mode : kModes) {
      const auto mentioned = std::ranges::find(
          document, mode, [](const auto& preset) { return preset.PresetData.ModeID; });
      if (mentioned == document.end()) {
        if (Manager().GetCurrentConfigGuidForMode(mode) == current_[mode].guid) {
          current_[mode].gain = Find(current_[mode].guid)->gain;
        }
        continue;
      }
      const float gain = GainOf(mentioned->PresetData);
      if (Find(mentioned->Guid) == nullptr) {
        Config config(*mentioned);
        config.name += " (from Session)";
        config.isTemporary = true;
        configs_.push_back(config);
      }
      current_[mode] = {mentioned->Guid, gain};
    }
  }

  // As after a crash: what was temporary and holds user presets stays, under its name.
  void Reopen() {
    Terminate();
    Start();
    for (auto& config : configs_) {
      if (config.isTemporary && !config.users.empty()) config.isTemporary = false;
    }
    // What the document holds of a template that is not installed becomes its stored data.
    for (auto& config : configs_) {
      if (config.isTemporary) config.gain = current_[config.mode].gain;
    }
    std::erase_if(configs_, [this](const Config& c) {
      return c.isTemporary && current_[c.mode].guid != c.guid;
    });
  }

  void Compare() {
    const auto stored = Stored();
    ASSERT_EQ(stored.size(), configs_.size());
    for (const auto& config : configs_) {
      ASSERT_TRUE(stored.contains(config.guid)) << config.name;
      const Config& found = stored.at(config.guid);
      EXPECT_EQ(found.name, config.name);
      EXPECT_EQ(found.mode, config.mode);
      EXPECT_EQ(found.gain, config.gain);
      EXPECT_EQ(found.users, config.users) << config.name;
    }
    std::vector<std::string> dirty;
    for (const auto& mode : kModes) {
      const Current& current = current_[mode];
      const Config& config = *Find(current.guid);
      EXPECT_EQ(Manager().GetCurrentConfigGuidForMode(mode), current.guid) << mode;
      EXPECT_EQ(GainOf(Handler(mode).GetWorkingData()), current.gain);
      const bool isDirty = current.gain != config.gain;
      EXPECT_EQ(Manager().IsCurrentConfigDirtyForMode(mode), isDirty) << mode;
      if (isDirty) dirty.push_back(mode);
      const auto held = std::ranges::find(
          session_->document, mode, [](const auto& preset) { return preset.PresetData.ModeID; });
      ASSERT_NE(held, session_->document.end()) << mode;
      EXPECT_EQ(held->Guid, current.guid) << mode;
      EXPECT_EQ(GainOf(held->PresetData), current.gain) << mode;
      // A template that came with a document keeps the document's name there.
      EXPECT_TRUE(held->Name == config.name || held->Name + " (from Session)" == config.name);
    }
    // They are offered until one says no.
    std::vector<std::string> offered;
    Manager().SetHandleDirtyConfigurationPresetFunction([&](const std::string& mode, auto&&) {
      offered.push_back(mode);
      return offered.size() < 2;
    });
    EXPECT_EQ(Manager().HandleDirtyConfigPresets(), dirty.size() < 2);
    Manager().SetHandleDirtyConfigurationPresetFunction({});
    dirty.resize(std::min<std::size_t>(dirty.size(), 2));
    EXPECT_EQ(offered, dirty);
  }

  std::mt19937 random_;
  std::vector<Config> configs_;
  std::map<std::string, Current> current_;
  int shows_ = 0;
};

TEST_P(SeededStoreWalk, AgreesWithAPlainModel) { Walk(GetParam()); }

INSTANTIATE_TEST_SUITE_P(Seeds, SeededStoreWalk, ::testing::Range(1u, 1 + kSeeds));

}  // namespace
}  // namespace orvel::test
