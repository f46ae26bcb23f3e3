#include "orvel/models/orvel_model.h"

#include <stdexcept>

#include <gmock/gmock.h>

#include "orvel/presets/user_preset_data.h"
#include "tests/support/fake_session.h"

namespace orvel::test {
namespace {

using ::testing::ElementsAre;

class OrvelModelTest : public FakeSessionTest {
 protected:
  void SetUp() override {
    FakeSessionTest::SetUp();
    factory::CreateOrvelModel(model);
    Listen();
  }
  void TearDown() override {
    model.reset();
    FakeSessionTest::TearDown();
    SetTestLoop(nullptr);
  }
  static void SetTestLoop(const boost::intrusive_ptr<AsyncEventLoopAdaptor>& loop) {
    teskcore::threads::RegisterMainThread(loop);
  }

  void Listen() {
    model->RegisterForModelChanges([this](const OrvelModel*) { log.push_back("model"); });
    model->RegisterForSectionModelDataChanges(
        [this](const OrvelModel*, const UserPresetData& data) {
          log.push_back("data " + std::to_string(data.Models.size()));
        });
  }
  std::vector<std::string> TakeLog() { return std::exchange(log, {}); }
  // Selects, and takes in what that announces.
  void Select(const MixTypeClipModels& clips) {
    session->Select(clips);
    Loop().Drain();
    log.clear();
  }
  FakeSectionModel& Section(const std::string& modelID = "model_volume") {
    boost::intrusive_ptr<SectionModelInterface> section;
    model->GetSectionModel(modelID, section);
    return dynamic_cast<FakeSectionModel&>(*section);
  }
  std::size_t CountSections() {
    OrvelModel::SectionModels sections;
    EXPECT_EQ(model->GetSectionModels(sections), 0);
    return sections.size();
  }

  boost::intrusive_ptr<FakeClip> a{new FakeClip("a")};
  boost::intrusive_ptr<FakeClip> b{new FakeClip("b")};
  boost::intrusive_ptr<OrvelModel> model;
  std::vector<std::string> log;
};

TEST_F(OrvelModelTest, ShowsTheSectionsOfTheClipsCommonMode) {
  const boost::intrusive_ptr<OrvelModel> alone(new OrvelModel(nullptr));
  alone->Refresh();
  EXPECT_FALSE(alone->IsEnabled());
  EXPECT_EQ(model->GetModelName(), "");
  EXPECT_TRUE(model->IsReady() && CountSections() == 0);
  Select({a});
  EXPECT_EQ(model->GetModelName(), "a");
  Select({a, nullptr, b});
  EXPECT_EQ(model->GetModelName(), "Multiple Clips Selected");
  EXPECT_EQ(model->GetMixTypeClipModels(), (MixTypeClipModels{a, b}));
  OrvelModel::SectionModels sections;
  model->GetSectionModels(sections);
  std::vector<std::string> names;
  for (const auto& section : sections) {
    EXPECT_TRUE(dynamic_cast<SectionMultiModel*>(section.get()) && section->IsActive());
    names.push_back(section->GetName());
  }
  EXPECT_THAT(names, ElementsAre("model_loudness", "model_restoration", "model_clarity",
                                 "model_soundeffects", "model_volume"));
  boost::intrusive_ptr<SectionModelInterface> section;
  EXPECT_EQ(model->GetSectionModel("model_volume", section), 0);
  EXPECT_EQ(section, sections.back());
  EXPECT_EQ(model->GetSectionModel("model_pan", section), kStatus_NoSuchModel);
  EXPECT_FALSE(section);
  b->ready = false;
  EXPECT_FALSE(model->IsReady());

  b->mode = "music";
  Select({a, b});
  EXPECT_EQ(model->GetMixTypeClipModels().size(), 2u);
  EXPECT_EQ(CountSections(), 0u);
  EXPECT_FALSE(sections.back()->IsActive());
  a->status = 9;
  Select({a});
  EXPECT_EQ(CountSections(), 0u);
}

TEST_F(OrvelModelTest, ASectionThatCannotBeMadeIsLeftOutAndTheCreatorIsToldAllItNeeds) {
  std::vector<std::string> asked;
  factory::SetGenericFactoryFunction([&](const std::string& mode, const SectionDefinition& section,
                                         const auto& handler, const MixTypeClipModels& clips,
                                         bool followsSelection, auto& made) {
    float gain = 0.0f;
    section.GetConfiguration().GetValue("MaxGain", gain);
    asked.push_back(section.GetModelID() + (followsSelection ? " follows" : ""));
    EXPECT_EQ(section.GetModelID() == "model_volume", gain > 0.0f);
    if (section.GetModelID() == "model_duration") return;
    CreateFakeSection(mode, section, handler, clips, followsSelection, made);
  });
  a->mode = "music";
  Select({a});
  EXPECT_EQ(CountSections(), 2u);
  boost::intrusive_ptr<OrvelModel> ofClips;
  EXPECT_TRUE(factory::CreateOrvelModelForClips({a}, ofClips));
  Loop().RunTurn();
  EXPECT_THAT(asked, ::testing::Contains("model_volume follows"));
  EXPECT_EQ(asked.back(), "model_volume");
  Select({b});
  EXPECT_EQ(ofClips->GetMixTypeClipModels(), MixTypeClipModels{a});
  EXPECT_TRUE(ofClips->IsEnabled());
}

TEST_F(OrvelModelTest, LetsGoOfEverythingButLivesUntilItsPostHasRun) {
  Select({a});
  a->SetAdjustmentsMode("music");
  model.reset();
  EXPECT_EQ(a->changed.num_slots(), 1u);
  Loop().Drain();
  EXPECT_THAT(TakeLog(), ElementsAre("model", "data 3"));
  EXPECT_EQ(a->changed.num_slots() + session->selectionChanged.num_slots() +
                session->sessionChanged.num_slots() + stack->scopeChanged.num_slots(),
            0u);
  EXPECT_EQ(a->attachedTo, nullptr);
}

TEST_F(OrvelModelTest, MayBeLetGoByItsListeners) {
  const auto letGo = [this](auto&&...) { model.reset(); };
  const auto again = [&] {
    factory::CreateOrvelModel(model);
    Select({a});
  };
  Select({a});
  model->RegisterForSectionModelDataChanges(letGo);
  model->Refresh();
  EXPECT_FALSE(model);
  again();
  model->RegisterForSectionModelDataChanges(letGo);
  model->SuspendSignaling();
  model->ResumeSignaling(true);
  EXPECT_FALSE(model);
  again();
  model->RegisterForSectionModelDataChanges(letGo);
  Section().SetParamNormalized(2, 0.125f);
  EXPECT_FALSE(model);
  again();
  model->RegisterForModelChanges(letGo);
  a->SetAdjustmentsMode("music");
  Loop().Drain();
  EXPECT_FALSE(model);
}

TEST_F(OrvelModelTest, ClipsMayOwnItForAWhileAndSpeakWhenTheyAreLetGo) {
  a->onAttach = [&](bool) {
    const boost::intrusive_ptr<OrvelModel> owner(a->attachedTo);
    a->changed();
  };
  boost::intrusive_ptr<OrvelModel> ofClips;
  factory::CreateOrvelModelForClips({a}, ofClips);
  Loop().Drain();
  ofClips.reset();
  EXPECT_EQ(Loop().RunTurn(), 0u);
  EXPECT_EQ(a->attachedTo, nullptr);

  b->onAttach = [](bool attached) {
    if (attached) throw std::runtime_error("clip");
  };
  EXPECT_THROW(factory::CreateOrvelModelForClips({a, b}, ofClips), std::runtime_error);
  Loop().Drain();
  EXPECT_EQ(a->changed.num_slots() + b->changed.num_slots(), 0u);
  EXPECT_EQ(a->attachedTo, nullptr);
}

TEST_F(OrvelModelTest, OfTwoSelectionsTheOneMadeInsideTheOtherHolds) {
  Select({a});
  const boost::intrusive_ptr<FakeClip> c(new FakeClip("c", "music"));
  for (const bool attached : {true, false}) {
    a->onAttach = [&, attached](bool on) {
      if (on != attached) return;
      a->onAttach.clear();
      session->Select({c});
    };
    session->Select({a, b});
    EXPECT_EQ(model->GetMixTypeClipModels(), MixTypeClipModels{c});
    EXPECT_EQ(CountSections(), 3u);
    EXPECT_EQ(c->changed.num_slots(), 1u);
    EXPECT_EQ(a->attachedTo, nullptr);
    Select({a});
  }
  bool once = true;
  const boost::signals2::scoped_connection selecting =
      model->RegisterForSectionModelDataChanges([&](auto&&...) {
        if (std::exchange(once, false)) session->Select({c});
      });
  model->Refresh();
  EXPECT_EQ(CountSections(), 3u);
}

TEST_F(OrvelModelTest, OfTwoRebuildsTheOneMadeInsideTheOtherHolds) {
  Select({a});
  bool once = true;
  const auto rebuild = [&](bool) {
    if (std::exchange(once, false)) model->Refresh();
  };
  Section("model_loudness").onSetActive = rebuild;  // the one that is let go
  model->Refresh();
  EXPECT_EQ(CountSections(), 5u);
  once = true;
  factory::SetGenericFactoryFunction([&](const auto& mode, const auto& section, const auto& handler,
                                         const auto& clips, bool flag, auto& made) {
    CreateFakeSection(mode, section, handler, clips, flag, made);
    dynamic_cast<FakeSectionModel&>(*made).onSetActive = rebuild;
  });
  model->Refresh();
  EXPECT_EQ(CountSections(), 5u);
}

TEST_F(OrvelModelTest, WhatFailsInAHostHindersNothingElse) {
  Select({a});
  const auto fail = [](auto&&...) { throw std::runtime_error("host"); };
  Section("model_clarity").onSetActive = fail;
  Section("model_loudness").onSuspend = fail;
  a->onAttach = fail;
  EXPECT_THROW(session->Select({a, b}), std::runtime_error);
  Loop().Drain();
  EXPECT_EQ(model->GetMixTypeClipModels(), (MixTypeClipModels{a, b}));
  EXPECT_EQ(CountSections(), 5u);
  a->onAttach.clear();
  factory::SetGenericFactoryFunction([&](const auto& mode, const auto& section, const auto& handler,
                                         const auto& clips, bool flag, auto& made) {
    if (section.GetModelID() == "model_clarity") fail();
    CreateFakeSection(mode, section, handler, clips, flag, made);
  });
  EXPECT_THROW(model->Refresh(), std::runtime_error);
  EXPECT_EQ(CountSections(), 4u);
  log.clear();
  a->SetAdjustmentsMode("music");
  b->SetAdjustmentsMode("music");
  Loop().Drain();
  EXPECT_THAT(TakeLog(), ElementsAre("model", "data 3"));  // no suspension was left behind
  const boost::intrusive_ptr<FakeClip> c(new FakeClip("c", "sfx"));
  c->onAttach = fail;
  session->selected = {c};
  EXPECT_THROW(session->sessionChanged(false), std::runtime_error);
  EXPECT_EQ(CountSections(), 4u) << "of the clips that are there";
  Loop().Drain();
  EXPECT_EQ(TakeLog().back(), "data 4");
}

TEST_F(OrvelModelTest, AListenerThatThrowsSilencesNobodyForLater) {
  Select({a});
  bool throws = true;
  const boost::signals2::scoped_connection throwing =
      model->RegisterForModelChanges([&](auto&&...) {
        if (throws) throw std::runtime_error("model");
      });
  int heard = 0;
  const boost::signals2::scoped_connection behind =
      model->RegisterForModelChanges([&heard](auto&&...) { ++heard; });
  a->SetAdjustmentsMode("music");
  EXPECT_THROW(Loop().RunTurn(), std::runtime_error);
  EXPECT_EQ(heard, 1);
  EXPECT_THAT(TakeLog(), ElementsAre("model", "data 3"));
  throws = false;
  a->SetAdjustmentsMode("dialog");
  Loop().Drain();
  EXPECT_THAT(TakeLog(), ElementsAre("model", "data 5"));

  const auto fail = [](int, float) { throw std::runtime_error("section"); };
  const boost::signals2::scoped_connection failing =
      Section("model_loudness").changed.connect(fail);
  model->SuspendSignaling();
  Section("model_loudness").Announce(1);
  EXPECT_THROW(model->ResumeSignaling(true), std::runtime_error);
  EXPECT_EQ(Section().suspendCount, 0);
  EXPECT_EQ(TakeLog().back(), "data 5");

  factory::SetGenericFactoryFunction([](const auto&, const auto&, const auto&, const auto&, bool,
                                        auto&) { throw std::runtime_error("creator"); });
  EXPECT_THROW(session->Select({b}), std::runtime_error);
  factory::SetGenericFactoryFunction(&CreateFakeSection);
  Select({a});
  Section().SetParamNormalized(2, 0.25f);
  EXPECT_THAT(TakeLog(), ElementsAre("data 5"));  // no suspension was left behind
}

TEST_F(OrvelModelTest, APostThatFailsIsTriedAgainWithTheNextChange) {
  struct FailingLoop : AsyncEventLoopAdaptor {
    void Post(const boost::function<void()>&) override { throw std::runtime_error("loop"); }
  };
  Select({a});
  SetTestLoop(new FailingLoop);
  EXPECT_THROW(a->SetAdjustmentsMode("music"), std::runtime_error);
  SetTestLoop(nullptr);
  a->SetAdjustmentsMode("sfx");
  Loop().Drain();
  EXPECT_THAT(TakeLog(), ElementsAre("model", "data 4"));
}

}  // namespace
}  // namespace orvel::test
