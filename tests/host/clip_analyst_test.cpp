#include "host/session/clip_analyst.h"

#include <gtest/gtest.h>
#include <pthread.h>

#include "tests/host/support/audio.h"

namespace orvelhost::testing {
namespace {

class ClipAnalystTest : public ::testing::Test {
 protected:
  ClipAnalystTest() { WriteFile(folder_ / "in.wav", Make(48000, 1, 4.0, Noise(0.1))); }

  boost::intrusive_ptr<Clip> Served(ClipAnalyst& analyst) {
    const boost::intrusive_ptr<Clip> clip(new Clip("in.wav", {48000, 1}));
    analyst.Serve(clip, folder_ / "in.wav");
    return clip;
  }

  void Await(const ClipAnalyst& analyst) {
    for (loop_->Drain(); analyst.IsBusy(); loop_->Drain()) {
      EXPECT_TRUE(analyst.Wait([] { return true; }));
    }
  }

  TemporaryFolder folder_;
  AnalysisCache cache_;
  boost::intrusive_ptr<orvel::QueuedEventLoop> loop_{new orvel::QueuedEventLoop};
  ClipAnalyst analyst_{cache_, loop_};
};

TEST_F(ClipAnalystTest, WhatWasCancelledIsNeverToldAndCanBeAskedForAgain) {
  const boost::intrusive_ptr<Clip> first = Served(analyst_);
  const boost::intrusive_ptr<Clip> second = Served(analyst_);
  first->RequestMeasurement(false);
  EXPECT_FALSE(analyst_.Wait([] { return false; }));
  analyst_.Cancel(first);
  EXPECT_EQ(first->MeasurementStatus(), kAnalysis_None);
  second->RequestMeasurement(false);
  Await(analyst_);
  EXPECT_TRUE(second->Measurement());
  EXPECT_FALSE(first->Measurement());
  first->RequestMeasurement(false);
  first->RequestMeasurement(true);
  Await(analyst_);
  EXPECT_TRUE(first->Measurement()->isMapped) << "also when it is asked for while under way";
}

TEST_F(ClipAnalystTest, WhatIsKnownStaysWhenMoreIsCancelledOrFails) {
  const boost::intrusive_ptr<Clip> clip = Served(analyst_);
  clip->RequestMeasurement(false);
  Await(analyst_);
  clip->RequestMeasurement(true);
  analyst_.Cancel(clip);
  EXPECT_EQ(clip->MeasurementStatus(), kAnalysis_Done);
  EXPECT_EQ(clip->Measurement()->analysis.frameCount, 192000);
  std::filesystem::remove(folder_ / "in.wav");
  clip->RequestMeasurement(true);
  EXPECT_EQ(clip->MeasurementStatus(), kAnalysis_Running) << "it is asked for again";
  Await(analyst_);
  EXPECT_EQ(clip->MeasurementStatus(), kAnalysis_Done);
  EXPECT_FALSE(clip->Measurement()->isMapped);
  clip->ForgetMeasurement();
  EXPECT_FALSE(clip->Measurement());
}

TEST_F(ClipAnalystTest, AnAnalystMayEndBeforeItsWorkAndItsClips) {
  std::vector<boost::intrusive_ptr<Clip>> clips(50);
  {
    ClipAnalyst analyst(cache_, loop_);
    for (auto& clip : clips) (clip = Served(analyst))->RequestMeasurement(false);
  }
  EXPECT_LT(loop_->RunTurn(), 50U) << "it leaves what still waits";
  for (const auto& clip : clips) EXPECT_EQ(clip->MeasurementStatus(), kAnalysis_None);
  clips[0]->RequestMeasurement(false);
  EXPECT_EQ(clips[0]->MeasurementStatus(), kAnalysis_None);
}

TEST_F(ClipAnalystTest, WithoutAThreadAClipIsNotMeasuredUntilItIsAskedForAgain) {
  const boost::intrusive_ptr<Clip> clip = Served(analyst_);
  pthread_attr_t usual;
  pthread_getattr_default_np(&usual);
  pthread_attr_t greedy = usual;
  pthread_attr_setstacksize(&greedy, std::size_t{1} << 50);  // more than there are addresses
  pthread_setattr_default_np(&greedy);
  clip->RequestMeasurement(false);
  pthread_setattr_default_np(&usual);
  EXPECT_FALSE(analyst_.IsBusy());
  EXPECT_EQ(clip->MeasurementStatus(), kAnalysis_None);
  clip->RequestMeasurement(false);
  Await(analyst_);
  EXPECT_TRUE(clip->Measurement());
}

}  // namespace
}  // namespace orvelhost::testing
