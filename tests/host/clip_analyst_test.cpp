#include "host/session/clip_analyst.h"

#include <thread>

#include <gtest/gtest.h>

#include "host/session/host.h"
#include "tests/host/support/audio.h"

namespace orvelhost::testing {
namespace {

class ClipAnalystTest : public ::testing::Test {
 protected:
  ClipAnalystTest() { WriteFile(folder_ / "in.wav", Make(48000, 1, 4.0, Noise(0.1))); }

  boost::intrusive_ptr<Clip> Served(ClipAnalyst& analyst, const std::string& file) {
    const boost::intrusive_ptr<Clip> clip(new Clip(file, {48000, 1}));
    analyst.Serve(clip, folder_ / file);
    return clip;
  }

  /// Runs the main thread's loop until no measurement of the clip is under way.
  static void Await(const boost::intrusive_ptr<Clip>& clip) {
    while (clip->MeasurementStatus() == kAnalysis_Running) {
      if (teskcore::threads::GetDefaultEventLoop()->RunTurn() == 0) {
        std::this_thread::yield();
      }
    }
  }

  TemporaryFolder folder_;
};

TEST_F(ClipAnalystTest, AClipIsToldByTheMainThreadWhatWasMeasured) {
  ClipAnalyst analyst;
  const boost::intrusive_ptr<Clip> clip = Served(analyst, "in.wav");
  std::vector<std::thread::id> told;
  clip->RegisterForMeasurements([&] { told.push_back(std::this_thread::get_id()); });
  clip->RequestMeasurement(false);
  clip->RequestMeasurement(false);
  Await(clip);
  ASSERT_TRUE(clip->Measurement());
  EXPECT_EQ(clip->Measurement()->analysis.frameCount, 192000);
  EXPECT_TRUE(clip->Measurement()->noise);
  EXPECT_EQ(told, std::vector(2, std::this_thread::get_id())) << "under way, and done";
  EXPECT_EQ(analyst.Done(clip), -1.0);
}

TEST_F(ClipAnalystTest, WhatWasCancelledIsNeverToldAndCanBeAskedForAgain) {
  ClipAnalyst analyst;
  const boost::intrusive_ptr<Clip> first = Served(analyst, "in.wav");
  const boost::intrusive_ptr<Clip> second = Served(analyst, "in.wav");
  first->RequestMeasurement(false);
  analyst.Cancel(first);
  EXPECT_EQ(first->MeasurementStatus(), kAnalysis_None);
  second->RequestMeasurement(false);
  Await(second);
  EXPECT_TRUE(second->Measurement());
  EXPECT_FALSE(first->Measurement());
  first->RequestMeasurement(false);
  first->RequestMeasurement(true);
  Await(first);
  EXPECT_TRUE(first->Measurement()->isMapped) << "also when it is asked for while under way";
}

TEST_F(ClipAnalystTest, AnAnalystMayEndBeforeItsWorkAndItsClips) {
  boost::intrusive_ptr<Clip> clip;
  {
    ClipAnalyst analyst;
    clip = Served(analyst, "in.wav");
    clip->RequestMeasurement(false);
  }
  teskcore::threads::GetDefaultEventLoop()->Drain();
  EXPECT_FALSE(clip->Measurement());
  clip->ForgetMeasurement();
  clip->RequestMeasurement(false);
  EXPECT_EQ(clip->MeasurementStatus(), kAnalysis_None);
}

}  // namespace
}  // namespace orvelhost::testing
