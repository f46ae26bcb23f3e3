// Gives every test program a preferences folder of its own, which goes with it: no test may see or
// touch the person's.

#include <cstdlib>
#include <memory>

#include <gtest/gtest.h>

#include "tests/support/temp_dir.h"

namespace orvel::test {
namespace {

struct OwnPreferences : ::testing::Environment {
  void SetUp() override {
    folder_ = std::make_unique<TempDir>();
    setenv("XDG_CONFIG_HOME", folder_->Path().c_str(), 1);
  }
  void TearDown() override { folder_.reset(); }
  std::unique_ptr<TempDir> folder_;
};

const auto* const kRegistered = ::testing::AddGlobalTestEnvironment(new OwnPreferences);

}  // namespace
}  // namespace orvel::test
