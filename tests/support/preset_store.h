#pragma once

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "orvel/core/dir.h"
#include "orvel/core/library_module.h"
#include "orvel/core/trace.h"
#include "tests/support/preset_folder.h"
#include "tests/support/temp_dir.h"

namespace orvel::test {

/// A preset folder of the test's own, with the traces of the presets.
class PresetStore : public ::testing::Test {
 protected:
  using Cache = boost::intrusive_ptr<PresetsCache>;

  PresetStore() : before_(Dir::PrefDir()) {
    Dir::SetPrefDir(folder_.AsDir());
    teskcore::debug::SetTraceLevel("app.Presets", 3);
    teskcore::debug::SetTraceSink(
        [this](const std::string&, int, const std::string& text) { traces_.push_back(text); });
  }
  ~PresetStore() override {
    teskcore::debug::SetTraceSink({});
    teskcore::debug::SetTraceLevel("app.Presets", 0);
    Dir::SetPrefDir(before_);
  }

  static Cache Open() { return new PresetsCache(GetLibraryModule(), true); }

  std::filesystem::path Root() const { return folder_.Path() / "Presets" / "Orvel"; }

  bool WasTraced(const std::string& text) const {
    return std::ranges::any_of(
        traces_, [&text](const std::string& trace) { return trace.find(text) != trace.npos; });
  }

  TempDir folder_;
  std::vector<std::string> traces_;

 private:
  Dir before_;
};

}  // namespace orvel::test
