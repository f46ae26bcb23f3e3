#include "host/session/clip_section_model.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/effects/effect_catalogue.h"
#include "host/session/host.h"

namespace orvelhost::testing {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::FloatNear;
using ::testing::IsEmpty;
using ::testing::Pair;
using Volume = orvel::SectionModelVolumeParams;
using Pan = orvel::SectionModelPanParams;
using Clarity = orvel::SectionModelClarityParams;
using Restoration = orvel::SectionModelRestorationParams;
using ModelPtr = boost::intrusive_ptr<orvel::SectionModelInterface>;

class ClipSectionModelTest : public ::testing::Test {
 protected:
  ModelPtr Model(const std::string& modelID) { return Model(modelID, {clip_}); }

  ModelPtr Model(const std::string& modelID, const orvel::MixTypeClipModels& clips,
                 const orvel::PropList& configuration = {}) {
    ModelPtr model;
    orvel::factory::CreateModelForClips(modelID, "dialog", configuration, host_.GetSession(), clips,
                                        false, model);
    return model;
  }

  static float Physical(const ModelPtr& model, int paramID) {
    float value = -1.0f;
    model->GetParamNormalized(paramID, value);
    model->ToPhysical(paramID, value, value);
    return value;
  }

  static int Status(const ModelPtr& model, int paramID) {
    return static_cast<int>(std::lround(Physical(model, paramID)));
  }

  static ClipMeasurement Measured(std::optional<DynamicsLevels> dynamics) {
    ClipMeasurement measurement;
    measurement.analysis.dynamics = dynamics;
    return measurement;
  }

  /// Records what the model tells.
  void Listen(const ModelPtr& model) {
    model->RegisterForModelChanges(
        [this](int paramID, float value) { heard_.emplace_back(paramID, value); });
  }

  Host host_;
  boost::intrusive_ptr<Clip> clip_{new Clip("clip", {48000, 2})};
  std::vector<std::pair<int, float>> heard_;
};

TEST_F(ClipSectionModelTest, EffectsStandInTheOrderOfTheirNumbers) {
  for (const char* modelID : {"model_volume", "model_stereowidth", "model_clarity"}) Model(modelID);
  EXPECT_GT(clip_->Chain().Slots().size(), 2U);
  EXPECT_TRUE(std::ranges::is_sorted(clip_->Chain().Slots(), {}, &EffectSlot::orderNumber));
}

TEST_F(ClipSectionModelTest, PanNotSupportedTellsOfMoreThanTwoChannels) {
  EXPECT_EQ(Status(Model("model_pan"), Pan::kPanNotSupported), 0);
  clip_.reset(new Clip("clip", {48000, 6}));
  EXPECT_EQ(Status(Model("model_pan"), Pan::kPanNotSupported), 1);
}

TEST_F(ClipSectionModelTest, TheCurveReadBacksFollowTheEqualizerAndCannotBeWritten) {
  const ModelPtr model =
      Model("model_clarity", {clip_}, orvel::GetModelConfiguration("dialog", "model_clarity"));
  Listen(model);
  const auto band = [&](int index) {
    float value = -1.0f;
    model->GetParamNormalized(Clarity::kEQCurveValue0 + index, value);
    return value;
  };
  model->SetParamsNormalized({{Clarity::kEQPreset, 0.1f}, {Clarity::kEQAmount, 1.0f}});  // Intercom
  EXPECT_NEAR(band(0), 0.0715f, 1e-5f);
  EXPECT_NEAR(band(7), 0.596f, 1e-5f);
  EXPECT_THAT(heard_, Contains(Pair(Clarity::kEQCurveValue0 + 7, FloatNear(0.596f, 1e-5f))));
  EXPECT_EQ(model->SetParamNormalized(Clarity::kEQCurveValue0, 1.0f), 0);
  EXPECT_NEAR(band(0), 0.0715f, 1e-5f);
}

TEST_F(ClipSectionModelTest, DynamicsFollowTheMeasuredLevelsOnceTheyAreKnown) {
  int asked = 0;
  clip_->SetMeasurer([&] { ++asked; });
  const ModelPtr model = Model("model_clarity");
  EXPECT_EQ(Status(model, Clarity::kAnalysisStatus), kAnalysis_None);
  EXPECT_EQ(asked, 0);
  model->SetParamsNormalized({{Clarity::kEnableDynamics, 1.0f}, {Clarity::kDynamicsAmount, 1.0f}});
  EXPECT_EQ(Status(model, Clarity::kAnalysisStatus), kAnalysis_Running);
  const auto points = [&] {
    return clip_->Chain().Slots().front().parameters[dynamics::kPointCount] * 7;
  };
  EXPECT_FLOAT_EQ(points(), 3.0f) << "the control's own mappings";
  Listen(model);
  clip_->SetMeasurement(Measured(DynamicsLevels{-10, -30}));
  EXPECT_FLOAT_EQ(points(), 6.0f);
  EXPECT_FLOAT_EQ(clip_->Chain().Slots().front().parameters[dynamics::kFirstPoint + 8], 0.9f);
  EXPECT_THAT(heard_, ElementsAre(Pair(Clarity::kAnalysisStatus, 0.5f)));
  model->SetParamNormalized(Clarity::kReanalyzeDynamics, 1.0f);
  EXPECT_EQ(Status(model, Clarity::kReanalyzeDynamics), 0);
  EXPECT_EQ(Status(model, Clarity::kAnalysisStatus), kAnalysis_Running);
  EXPECT_EQ(asked, 2);
  clip_->SetMeasurement(Measured(std::nullopt));
  EXPECT_EQ(Status(model, Clarity::kAnalysisStatus), kAnalysis_NotMeasurable);
}

TEST_F(ClipSectionModelTest, AMeasurementThatFailedIsAskedForAgainOnlyByAWrite) {
  int asked = 0;
  clip_->SetMeasurer([&] {
    ++asked;
    clip_->SetMeasurement(std::nullopt);
  });
  const ModelPtr model = Model("model_restoration");
  model->SetParamNormalized(Restoration::kEnableReduceHum, 1.0f);
  EXPECT_EQ(asked, 1);
  model->SetParamNormalized(Restoration::kReduceHum, 1.0f);
  EXPECT_EQ(asked, 2);
}

TEST_F(ClipSectionModelTest, ABadWriteIsRefusedAsAWhole) {
  const ModelPtr model = Model("model_volume");
  Listen(model);
  const std::vector<EffectSlot> slots = clip_->Chain().Slots();
  const std::vector<float> values = clip_->SectionValues("model_volume");
  const float infinity = std::numeric_limits<float>::infinity();
  const float noNumber = std::numeric_limits<float>::quiet_NaN();
  const std::pair<int, float> cases[] = {
      {-1, 0.5f}, {3, 0.5f}, {Volume::kVolume, infinity}, {Volume::kVolume, noNumber}};
  for (const auto& bad : cases) {
    EXPECT_NE(model->SetParamsNormalized({{Volume::kEnableVolume, 1.0f}, bad}), 0);
  }
  EXPECT_EQ(clip_->Chain().Slots(), slots);
  EXPECT_EQ(clip_->SectionValues("model_volume"), values);
  EXPECT_THAT(heard_, IsEmpty());
  float value = 0.5f;
  EXPECT_NE(model->GetParamNormalized(3, value), 0);
  EXPECT_FALSE(model->ToPhysical(3, 0.5f, value));
  EXPECT_FALSE(model->ToNormalized(-1, 0.5f, value));
  EXPECT_EQ(value, 0.5f);
}

TEST_F(ClipSectionModelTest, TellsEachChangeOnceInOrderAndAfterTheState) {
  const ModelPtr model = Model("model_volume");
  Listen(model);
  bool effectFollowed = false;
  model->RegisterForModelChanges([&](int, float) {
    effectFollowed = !ChainFilters(clip_->Chain(), {{48000, 2}}).empty();
  });
  model->SetParamsNormalized(
      {{Volume::kVolume, 7.0f}, {Volume::kEnabled, 1.0f}, {Volume::kEnableVolume, 1.0f}});
  EXPECT_THAT(heard_, ElementsAre(Pair(Volume::kEnableVolume, 1.0f), Pair(Volume::kVolume, 1.0f)));
  EXPECT_TRUE(effectFollowed);
}

TEST_F(ClipSectionModelTest, SuspensionNestsAndHoldsBackEachChangeOnce) {
  const ModelPtr model = Model("model_volume");
  Listen(model);
  model->SuspendSignaling();
  model->SuspendSignaling();
  model->SetParamNormalized(Volume::kVolume, 0.1f);
  model->SetParamNormalized(Volume::kEnableVolume, 1.0f);
  model->SetParamNormalized(Volume::kVolume, 0.2f);
  model->ResumeSignaling(true);
  EXPECT_THAT(heard_, IsEmpty());
  model->ResumeSignaling(true);
  EXPECT_THAT(heard_, ElementsAre(Pair(Volume::kEnableVolume, 1.0f), Pair(Volume::kVolume, 0.2f)));

  heard_.clear();
  model->SuspendSignaling();
  model->SetParamNormalized(Volume::kEnableVolume, 0.0f);
  model->ResumeSignaling(false);
  model->ResumeSignaling(true);  // one too many does no harm
  EXPECT_THAT(heard_, IsEmpty());
  model->SetParamNormalized(Volume::kVolume, 0.4f);
  EXPECT_THAT(heard_, ElementsAre(Pair(Volume::kVolume, 0.4f)));
}

TEST_F(ClipSectionModelTest, AListenerMayWriteAndLetGoOfTheModel) {
  ModelPtr model = Model("model_volume");
  orvel::SectionModelInterface* raw = model.get();
  model->RegisterForModelChanges([&](int paramID, float) {
    if (paramID == Volume::kEnableVolume) {
      model->SetParamNormalized(Volume::kVolume, 0.25f);
      model = nullptr;
    }
  });
  raw->SetParamNormalized(Volume::kEnableVolume, 1.0f);
  EXPECT_EQ(clip_->SectionValues("model_volume")[Volume::kVolume], 0.25f);
}

TEST_F(ClipSectionModelTest, NoModelIsMadeWithoutADefinitionOrASingleClipOfThisHost) {
  EXPECT_EQ(Model("model_unknown"), nullptr);
  EXPECT_EQ(Model("model_volume", orvel::MixTypeClipModels()), nullptr);
}

}  // namespace
}  // namespace orvelhost::testing
