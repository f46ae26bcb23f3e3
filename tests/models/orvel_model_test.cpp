#include "orvel/models/orvel_model.h"

#include <functional>
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
    MakeModel();
  }
  void MakeModel() {
    factory::CreateOrvelModel(model);
    model->RegisterForModelChanges([this](const OrvelModel*) { log.push_back("model"); });
    model->RegisterForSectionModelDataChanges(
        [this](const OrvelModel*, const UserPresetData& data) {
          log.push_back("data " + std::to_string(data.Models.size()));
        });
  }
  std::vector<std::string> TakeLog() { return std::exchange(log, {}); }
  void SelectSilently(const MixTypeClipModels& clips) {
    Select(clips);
    log.clear();
  }
  FakeSectionModel& Fake(const std::string& modelID) {
    return dynamic_cast<FakeSectionModel&>(*Section(modelID));
  }

  std::vector<std::string> log;
};

TEST_F(OrvelModelTest, ShowsTheSectionsOfTheClipsCommonMode) {
  const boost::intrusive_ptr<OrvelModel> alone(new OrvelModel(nullptr));
  alone->Refresh();
  EXPECT_FALSE(alone->IsEnabled());
  EXPECT_EQ(model->GetModelName(), "");
  Select({a});
  EXPECT_EQ(model->GetModelName(), "a");
  Select({a, nullptr, b});
  EXPECT_EQ(model->GetModelName(), "Multiple Clips Selected");
  EXPECT_EQ(model->GetMixTypeClipModels(), (MixTypeClipModels{a, b}));
  const auto section = Section("model_volume");
  EXPECT_TRUE(dynamic_cast<SectionMultiModel*>(section.get()) && section->IsActive());
  boost::intrusive_ptr<SectionModelInterface> other = section;
  EXPECT_EQ(model->GetSectionModel("model_pan", other), kStatus_NoSuchModel);
  EXPECT_FALSE(other);
  EXPECT_TRUE(model->IsReady());
  b->ready = false;
  EXPECT_FALSE(model->IsReady());
  a->status = 9;
  Select({a});
  EXPECT_EQ(Sections().size(), 0u);
  EXPECT_FALSE(section->IsActive());
}

TEST_F(OrvelModelTest, ASectionThatCannotBeMadeIsLeftOutAndTheCreatorIsToldAllItNeeds) {
  std::string asked;
  onMade = [&](auto& section, bool follows) {
    asked += section->GetName() + (follows ? "! " : " ");
    if (section->GetName() == "model_duration") section = nullptr;
  };
  a->mode = "music";
  session->Select({a});
  EXPECT_EQ(Sections().size(), 2u);
  boost::intrusive_ptr<OrvelModel> ofClips;
  EXPECT_TRUE(factory::CreateOrvelModelForClips({a}, ofClips));
  EXPECT_EQ(asked,
            "model_loudness! model_duration! model_volume! "
            "model_loudness model_duration model_volume ");
  ofClips->RegisterForModelChanges([this](const OrvelModel*) { log.push_back("of clips"); });
  a->SetAdjustmentsMode("sfx");
  Select({b});
  EXPECT_THAT(log, ::testing::Contains("of clips"));
  EXPECT_EQ(ofClips->GetMixTypeClipModels(), MixTypeClipModels{a});
  EXPECT_TRUE(ofClips->IsEnabled());
}

TEST_F(OrvelModelTest, LetsGoOfEverythingAlsoWhenAListenerLetsGoOfIt) {
  const std::function<void()> acts[] = {
      [this] { model->Refresh(); },
      [this] {
        model->SuspendSignaling();
        model->ResumeSignaling(true);
      },
      [this] { Section("model_volume")->SetParamNormalized(2, 0.125f); },
      [this] { a->SetAdjustmentsMode("music"); },
      [this] {
        a->SetAdjustmentsMode("sfx");
        model.reset();
        EXPECT_EQ(a->changed.num_slots(), 1u) << "it lives until its post has run";
      }};
  for (const auto& act : acts) {
    MakeModel();
    SelectSilently({a});
    const auto letGo = [this](auto&&...) { model.reset(); };
    model->RegisterForModelChanges(letGo);
    model->RegisterForSectionModelDataChanges(letGo);
    act();
    Loop().Drain();
    EXPECT_FALSE(model);
    EXPECT_EQ(a->changed.num_slots() + session->selectionChanged.num_slots() +
                  session->sessionChanged.num_slots() + stack->scopeChanged.num_slots(),
              0u);
    EXPECT_EQ(a->attachedTo, nullptr);
  }
  EXPECT_THAT(TakeLog(), ElementsAre("model", "data 4"));
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
    EXPECT_EQ(Sections().size(), 3u);
    EXPECT_EQ(c->changed.num_slots(), 1u);
    EXPECT_EQ(a->attachedTo, nullptr);
    Select({a});
  }
}

TEST_F(OrvelModelTest, OfTwoRebuildsTheOneMadeInsideTheOtherHolds) {
  Select({a});
  bool once = true;
  const auto rebuild = [&](bool) {
    if (std::exchange(once, false)) model->Refresh();
  };
  Fake("model_loudness").onSetActive = rebuild;  // the one that is let go
  model->Refresh();
  EXPECT_EQ(Sections().size(), 5u);
  once = true;
  onMade = [&](auto& section, bool) {
    dynamic_cast<FakeSectionModel&>(*section).onSetActive = rebuild;
  };
  model->Refresh();
  EXPECT_EQ(Sections().size(), 5u);
}

TEST_F(OrvelModelTest, WhatFailsInAHostHindersNothingElse) {
  SelectSilently({a});
  const auto fail = [](auto&&...) { throw std::runtime_error("host"); };
  Fake("model_clarity").onSetActive = fail;
  Fake("model_loudness").onSuspend = fail;
  a->onAttach = fail;
  EXPECT_THROW(session->Select({a, b}), std::runtime_error);
  Loop().Drain();
  EXPECT_EQ(model->GetMixTypeClipModels(), (MixTypeClipModels{a, b}));
  EXPECT_EQ(Sections().size(), 5u);
  a->onAttach.clear();
  onMade = [&](auto& section, bool) {
    if (section->GetName() == "model_clarity") fail();
  };
  EXPECT_THROW(model->Refresh(), std::runtime_error);
  EXPECT_EQ(Sections().size(), 4u);
  log.clear();
  a->SetAdjustmentsMode("music");
  b->SetAdjustmentsMode("music");
  Loop().Drain();
  EXPECT_THAT(TakeLog(), ElementsAre("model", "data 3"));  // no suspension was left behind
  const boost::intrusive_ptr<FakeClip> c(new FakeClip("c", "sfx"));
  c->onAttach = fail;
  session->selected = {c};
  EXPECT_THROW(session->sessionChanged(false), std::runtime_error);
  EXPECT_EQ(Sections().size(), 4u) << "of the clips that are there";
  Loop().Drain();
  EXPECT_EQ(TakeLog().back(), "data 4");
}

TEST_F(OrvelModelTest, AListenerThatThrowsSilencesNobodyForLater) {
  SelectSilently({a});
  bool throws = true;
  model->RegisterForModelChanges([&](auto&&...) {
    if (throws) throw std::runtime_error("model");
  });
  int heard = 0;
  model->RegisterForModelChanges([&heard](auto&&...) { ++heard; });
  a->SetAdjustmentsMode("music");
  EXPECT_THROW(Loop().RunTurn(), std::runtime_error);
  EXPECT_EQ(heard, 1);
  EXPECT_THAT(TakeLog(), ElementsAre("model", "data 3"));
  throws = false;
  a->SetAdjustmentsMode("dialog");
  Loop().Drain();
  EXPECT_THAT(TakeLog(), ElementsAre("model", "data 5"));

  Fake("model_loudness").changed.connect([](auto&&...) { throw std::runtime_error("section"); });
  model->SuspendSignaling();
  Fake("model_loudness").Announce(1);
  EXPECT_THROW(model->ResumeSignaling(true), std::runtime_error);
  EXPECT_EQ(Fake("model_volume").suspendCount, 0);
  EXPECT_EQ(TakeLog().back(), "data 5");
  model.reset();  // with its listeners
}

TEST_F(OrvelModelTest, APostThatFailsIsTriedAgainWithTheNextChange) {
  struct FailingLoop : AsyncEventLoopAdaptor {
    void Post(const boost::function<void()>&) override { throw std::runtime_error("loop"); }
  };
  SelectSilently({a});
  teskcore::threads::RegisterMainThread(new FailingLoop);
  EXPECT_THROW(a->SetAdjustmentsMode("music"), std::runtime_error);
  teskcore::threads::RegisterMainThread(nullptr);
  a->SetAdjustmentsMode("sfx");
  Loop().Drain();
  EXPECT_THAT(TakeLog(), ElementsAre("model", "data 4"));
}

}  // namespace
}  // namespace orvel::test
