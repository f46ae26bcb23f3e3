// Writes that fail: no room on the disk, a folder that is read-only. Each gives false and a trace
// with the path, and memory and disk agree afterwards.

#include <csignal>
#include <iostream>
#include <set>

#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
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

template <typename T>
Preset<T> WithGuid(Preset<T> preset, const Guid& guid) {
  preset.Guid = guid;
  return preset;
}

struct Operation {
  const char* name;
  bool (*run)(PresetsCache& cache);
  rlim_t tooLittle = kNoFile;  // for what it writes
  bool needsOldFile = false;   // to be replaced or deleted
};

// clang-format off
const Operation kOperations[] = {
    {"a new user preset", [](PresetsCache& cache) {
       return cache.SavePreset(MakeUserPreset("New", kMine)); }, kSmallFile},
    {"a user preset's new values", [](PresetsCache& cache) {
       return cache.SavePreset(WithGuid(MakeUserPreset("Voice", kMine, 9.0f), kVoice)); }, kSmallFile, true},
    {"a user preset's new name", [](PresetsCache& cache) {
       return cache.SavePreset(WithGuid(MakeUserPreset("Other", kMine), kVoice)); }, kSmallFile, true},
    {"a user preset in the place of another", [](PresetsCache& cache) {
       return cache.SavePreset(MakeUserPreset("Voice", kMine)); }, kSmallFile, true},
    {"a user preset at a name that a file was given by hand", [](PresetsCache& cache) {
       return cache.SavePreset(MakeUserPreset("By Hand", kMine)); }, kSmallFile, true},
    {"a template's new values", [](PresetsCache& cache) {
       return cache.SavePreset(WithGuid(MakeConfigPreset("Mine", "dialog", 9.0f), kMine)); }, kSmallFile, true},
    {"a template's new name", [](PresetsCache& cache) {
       return cache.SavePreset(WithGuid(MakeConfigPreset("Other"), kMine)); }, kSmallFile},
    {"a template's new name beside one of another mode", [](PresetsCache& cache) {
       return cache.SavePreset(WithGuid(MakeConfigPreset("Music"), kMine)); }, kSmallFile},
    {"a temporary template", [](PresetsCache& cache) {
       return cache.AddTemporaryPreset(MakeConfigPreset("Document")); }, kSmallFile},
    {"a template in the place of the temporary one", [](PresetsCache& cache) {
       return cache.CreateConfigPreset(MakeConfigPreset("New")); }, kSmallFile},
    {"the user presets of another template", [](PresetsCache& cache) {
       return cache.MigrateUserPresets(kTemporary, kMine, true); }, kLargeFile},
    {"a user preset's removal", [](PresetsCache& cache) {
       return cache.RemovePreset(kVoice); }, kNoFile, true},
    {"a template's removal", [](PresetsCache& cache) {
       return cache.RemoveConfigPreset(kMine); }, kNoFile, true},
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
    ASSERT_TRUE(cache_->CreateConfigPreset(WithGuid(MakeConfigPreset("Mine"), kMine)));
    ASSERT_TRUE(cache_->CreateConfigPreset(MakeConfigPreset("Music", "music")));
    ASSERT_TRUE(cache_->SavePreset(WithGuid(MakeUserPreset("Voice", kMine), kVoice)));
    ASSERT_TRUE(cache_->SavePreset(MakeUserPreset("Held", kMine)));
    fs::rename(Root() / "Mine/dialog/Held.orvel", Root() / "Mine/dialog/By Hand.orvel");
    cache_->Reload();
    view_ = Open();
    ASSERT_TRUE(cache_->AddTemporaryPreset(WithGuid(MakeConfigPreset("Temporary"), kTemporary)));
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
    const auto files = Snapshot();
    const auto known = Describe(*cache_);
    EXPECT_FALSE(operation.run(*cache_));
    EXPECT_TRUE(WasTraced(Root().string())) << "no trace tells where";
    EXPECT_EQ(Describe(*cache_), known);
    EXPECT_EQ(Snapshot(), files);
    EXPECT_TRUE(DoMemoryAndDiskAgree());
  }

  void ExpectSuccess(const Operation& operation) {
    EXPECT_TRUE(operation.run(*cache_)) << "the operation itself is at fault";
    EXPECT_TRUE(DoMemoryAndDiskAgree());
  }

  Cache cache_;
  Cache view_;
};

// No file can grow past `size`, as on a disk that runs full.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t size) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &before_);
    rlimit limit = before_;
    limit.rlim_cur = size;
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, handler_);
  }

 private:
  rlimit before_{};
  void (*handler_)(int);
};

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

TEST_F(StoreFaultsTest, AWriteForWhichThereIsNoRoomChangesNothing) {
  for (const auto& operation : kOperations) {
    for (const rlim_t room : std::set{kNoFile, kSmallFile, operation.tooLittle}) {
      if (operation.tooLittle == kNoFile) continue;
      SCOPED_TRACE(std::string(operation.name) + " with room for " + std::to_string(room));
      MakeStore();
      {
        const FileSizeLimit limit(room);
        ExpectRefusal(operation);
      }
      ExpectSuccess(operation);
    }
  }
}

TEST_F(StoreFaultsTest, AReadOnlyFolderStaysAsItIs) {
  const Nobody nobody(folder_.Path());
  for (const auto& operation : kOperations) {
    SCOPED_TRACE(operation.name);
    MakeStore();
    const auto setPermissions = [this](fs::perms permissions) {
      fs::permissions(Root(), permissions);
      for (const auto& entry : fs::recursive_directory_iterator(Root())) {
        if (entry.is_directory()) fs::permissions(entry.path(), permissions);
      }
    };
    setPermissions(fs::perms::owner_read | fs::perms::owner_exec);
    ExpectRefusal(operation);
    setPermissions(fs::perms::owner_all);
    ExpectSuccess(operation);
  }
}

TEST_F(StoreFaultsTest, AFolderThatShowsNothingIsNotTakenForAnEmptyOne) {
  const Nobody nobody(folder_.Path());
  MakeStore();
  const fs::path folder = Root() / "Mine/dialog";
  const fs::path sibling = Root() / "Mine/music/.save-0-11111111-1111-4111-8111-111111111111.tmp";
  Write(sibling, "left by a crash");
  fs::permissions(folder, fs::perms::none);
  EXPECT_FALSE(cache_->RemovePreset(kVoice));
  Open();
  EXPECT_FALSE(fs::exists(sibling)) << "nor does it hide the others";
  fs::permissions(folder, fs::perms::owner_write | fs::perms::owner_exec);
  EXPECT_FALSE(cache_->SavePreset(MakeUserPreset("New", kMine)));
  EXPECT_FALSE(cache_->SavePreset(WithGuid(MakeUserPreset("Voice", kMine, 9.0f), kVoice)));
  fs::permissions(folder, fs::perms::owner_all);
  EXPECT_TRUE(DoMemoryAndDiskAgree());
}

// In a folder that others may write into, too, nobody else's file can be deleted or replaced.
TEST_F(StoreFaultsTest, AFileOfSomebodyElseStaysAsItIs) {
  if (geteuid() != 0) {
    std::cout << "Only root can make files of two owners: not tested.\n";
    return;
  }
  for (const auto& operation : kOperations) {
    if (!operation.needsOldFile) continue;
    SCOPED_TRACE(operation.name);
    MakeStore();
    ASSERT_EQ(chmod((Root() / "Mine/dialog").c_str(), S_ISVTX | 0777), 0);
    const Nobody nobody(folder_.Path());
    ExpectRefusal(operation);
    ASSERT_TRUE(cache_->SavePreset(MakeUserPreset("Own", kMine)));
    ExpectRefusal({"", [](PresetsCache& cache) {
                     return cache.SavePreset(WithGuid(MakeUserPreset("Own", kMine), kVoice));
                   }});
  }
}

// On a small disk each operation is tried with every number of free pages, so that it breaks off at
// each of its writes.
TEST_F(StoreFaultsTest, OnAFullDiskNothingIsLost) {
  const fs::path disk = folder_.Path() / "Presets";
  fs::create_directories(disk);
  if (mount("tmpfs", disk.c_str(), "tmpfs", 0, "size=128k") != 0) {
    std::cout << "No disk can be mounted here: only the limit of a file's size is tested.\n";
    return;
  }
  struct Unmount {
    const fs::path& disk;
    ~Unmount() { umount2(disk.c_str(), MNT_DETACH); }
  } const unmount{disk};
  constexpr std::uintmax_t kPage = 4096;
  int refusals = 0;
  for (const auto& operation : kOperations) {
    for (std::uintmax_t pages = 0; pages < 8; ++pages) {
      SCOPED_TRACE(std::string(operation.name) + " with " + std::to_string(pages) + " free pages");
      MakeStore();
      const std::uintmax_t room = fs::space(disk).available;
      ASSERT_GE(room, pages * kPage);
      Write(disk / "filler", std::string(room - pages * kPage, 'x'));
      ASSERT_EQ(fs::space(disk).available, pages * kPage);
      UserPresets before;
      cache_->GetPresets(before);
      const bool isDone = operation.run(*cache_);
      EXPECT_TRUE(isDone || WasTraced(Root().string()));
      EXPECT_TRUE(DoMemoryAndDiskAgree());
      for (const auto& preset : before) {
        Preset<UserPresetData> found;
        EXPECT_TRUE(isDone || cache_->FindPreset(preset.Guid, found)) << preset.Name << " is lost";
      }
      refusals += isDone ? 0 : 1;
      fs::remove(disk / "filler");
      if (!isDone) ExpectSuccess(operation);
    }
  }
  EXPECT_GT(refusals, 10);
}

}  // namespace
}  // namespace orvel::test
