// Writes that fail: no room on the disk, a folder that is read-only. Each gives false and a trace
// with the path, and memory and disk agree afterwards.

#include <algorithm>
#include <csignal>
#include <set>

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include "orvel/configuration/configuration_manager.h"
#include "tests/support/preset_store.h"
#include "tests/support/small_factory.h"

namespace orvel::test {
namespace {

namespace fs = std::filesystem;

const Guid kMine("11111111-1111-4111-8111-111111111111");
const Guid kTemporary("22222222-2222-4222-8222-222222222222");
const Guid kVoice("33333333-3333-4333-8333-333333333333");

// In bytes: files for which there is too little room.
constexpr rlim_t kNoFile = 0;
constexpr rlim_t kSmallFile = 100;   // any preset's
constexpr rlim_t kLargeFile = 2000;  // that of the large preset alone
constexpr rlim_t kReadOnly = RLIM_INFINITY;

struct Operation {
  const char* name;
  bool (*run)(PresetsCache& cache);
  rlim_t tooLittle;  // for what it writes
};

// clang-format off
const Operation kOperations[] = {
    {"a new user preset", [](PresetsCache& cache) {
       return cache.SavePreset(MakeUserPreset("New", kMine)); }, kSmallFile},
    {"a user preset's new values", [](PresetsCache& cache) {
       return cache.SavePreset(MakeUserPreset("Voice", kMine, 9.0f, kVoice)); }, kSmallFile},
    {"a user preset's new name", [](PresetsCache& cache) {
       return cache.SavePreset(MakeUserPreset("Other", kMine, 1.0f, kVoice)); }, kSmallFile},
    {"a user preset in the place of another", [](PresetsCache& cache) {
       return cache.SavePreset(MakeUserPreset("Voice", kMine)); }, kSmallFile},
    {"a user preset at a name that a file was given by hand", [](PresetsCache& cache) {
       return cache.SavePreset(MakeUserPreset("By Hand", kMine)); }, kSmallFile},
    {"a template's new values", [](PresetsCache& cache) {
       return cache.SavePreset(MakeConfigPreset("Mine", "dialog", 9.0f, kMine)); }, kSmallFile},
    {"a template's new name", [](PresetsCache& cache) {
       return cache.SavePreset(MakeConfigPreset("Other", "dialog", 6.0f, kMine)); }, kSmallFile},
    {"a template's new name beside one of another mode", [](PresetsCache& cache) {
       return cache.SavePreset(MakeConfigPreset("Music", "dialog", 6.0f, kMine)); }, kSmallFile},
    {"a temporary template", [](PresetsCache& cache) {
       return cache.AddTemporaryPreset(MakeConfigPreset("Document")); }, kSmallFile},
    {"a template in the place of the temporary one", [](PresetsCache& cache) {
       return cache.CreateConfigPreset(MakeConfigPreset("New")); }, kSmallFile},
    {"the user presets of another template", [](PresetsCache& cache) {
       return cache.MigrateUserPresets(kTemporary, kMine, true); }, kLargeFile},
    {"a user preset's removal", [](PresetsCache& cache) {
       return cache.RemovePreset(kVoice); }, kNoFile},
    {"a template's removal", [](PresetsCache& cache) {
       return cache.RemoveConfigPreset(kMine); }, kNoFile},
};
// clang-format on

class StoreFaultsTest : public PresetStore {
 protected:
  static Cache Open() { return new PresetsCache(SmallFactory(), true); }

  ~StoreFaultsTest() override { ConfigurationManager::Terminate(); }

  // A store with something to do for each operation, and a second view of its folder.
  void MakeStore() {
    ConfigurationManager::Terminate();
    fs::remove_all(Root());
    cache_ = Open();
    ASSERT_TRUE(cache_->CreateConfigPreset(MakeConfigPreset("Mine", "dialog", 6.0f, kMine)));
    ASSERT_TRUE(cache_->CreateConfigPreset(MakeConfigPreset("Music", "music")));
    ASSERT_TRUE(cache_->SavePreset(MakeUserPreset("Voice", kMine, 1.0f, kVoice)));
    ASSERT_TRUE(cache_->SavePreset(MakeUserPreset("Held", kMine)));
    fs::rename(Root() / "Mine/dialog/Held.orvel", Root() / "Mine/dialog/By Hand.orvel");
    cache_->Reload();
    view_ = Open();
    ASSERT_TRUE(
        cache_->AddTemporaryPreset(MakeConfigPreset("Temporary", "dialog", 6.0f, kTemporary)));
    auto large = MakeUserPreset("Large", kTemporary);
    large.PresetData.Models["model_volume"].assign(kLargeFile, 1.0f);
    ASSERT_TRUE(cache_->SavePreset(large));
    ConfigurationManager::Initialize(nullptr, cache_, {"dialog"});
    const auto handler = ConfigurationManager::Get()->GetConfigPresetHandler("dialog");
    ASSERT_TRUE(handler->Select(kTemporary));
    traces_.clear();
  }

  bool DoMemoryAndDiskAgree() {
    view_->Reload();
    return Describe(*view_) == Describe(*cache_);
  }

  // Runs the operation where it must fail.
  void ExpectRefusal(const Operation& operation) {
    const auto files = Snapshot(Root());
    const auto known = Describe(*cache_);
    EXPECT_FALSE(operation.run(*cache_));
    EXPECT_TRUE(WasTraced(Root().string())) << "no trace tells where";
    EXPECT_EQ(Describe(*cache_), known);
    EXPECT_EQ(Snapshot(Root()), files);
    EXPECT_TRUE(DoMemoryAndDiskAgree());
  }

  void ExpectSuccess(const Operation& operation) {
    EXPECT_TRUE(operation.run(*cache_)) << "the operation itself is at fault";
    EXPECT_TRUE(DoMemoryAndDiskAgree());
  }

  void SetPermissions(fs::perms permissions) {
    fs::permissions(Root(), permissions);
    for (const auto& entry : fs::recursive_directory_iterator(Root())) {
      if (entry.is_directory()) fs::permissions(entry.path(), permissions);
    }
  }

  Cache cache_;
  Cache view_;
};

// No file can grow past `size`, as on a disk that runs full.
void LimitFileSize(rlim_t size) {
  rlimit limit{};
  getrlimit(RLIMIT_FSIZE, &limit);
  limit.rlim_cur = std::min(size, limit.rlim_max);
  setrlimit(RLIMIT_FSIZE, &limit);
}

// Root may write everywhere; this process may not while this lives. `folder` becomes nobody's.
class Nobody {
 public:
  explicit Nobody(const fs::path& folder) : isRoot_(geteuid() == 0) {
    constexpr uid_t kNobody = 65534;
    if (isRoot_ && (chown(folder.c_str(), kNobody, kNobody) != 0 || seteuid(kNobody) != 0)) {
      ADD_FAILURE() << "root cannot become another";
    }
  }
  ~Nobody() {
    if (isRoot_ && seteuid(0) != 0) ADD_FAILURE() << "root stays another";
  }

 private:
  bool isRoot_;
};

TEST_F(StoreFaultsTest, AWriteThatFailsChangesNothing) {
  std::signal(SIGXFSZ, SIG_IGN);
  const Nobody nobody(folder_.Path());
  for (const auto& operation : kOperations) {
    for (const rlim_t room : std::set{kNoFile, kSmallFile, operation.tooLittle, kReadOnly}) {
      if (operation.tooLittle == kNoFile && room != kReadOnly) continue;
      SCOPED_TRACE(std::string(operation.name) + " with room for " + std::to_string(room));
      MakeStore();
      LimitFileSize(room);
      if (room == kReadOnly) SetPermissions(fs::perms::owner_read | fs::perms::owner_exec);
      ExpectRefusal(operation);
      LimitFileSize(kReadOnly);
      SetPermissions(fs::perms::owner_all);
      ExpectSuccess(operation);
    }
  }
  // A folder that shows nothing is not taken for an empty one, nor does it hide the others.
  MakeStore();
  const fs::path sibling = Root() / "Mine/music/.save-0-11111111-1111-4111-8111-111111111111.tmp";
  WriteText(sibling, "left by a crash");
  fs::permissions(Root() / "Mine/dialog", fs::perms::owner_write | fs::perms::owner_exec);
  Open();
  EXPECT_FALSE(fs::exists(sibling));
  for (const int operation : {0, 1}) EXPECT_FALSE(kOperations[operation].run(*cache_));
  fs::permissions(Root() / "Mine/dialog", fs::perms::owner_all);
  EXPECT_TRUE(DoMemoryAndDiskAgree());
}

}  // namespace
}  // namespace orvel::test
