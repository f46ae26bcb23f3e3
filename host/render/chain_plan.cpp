#include "host/render/chain_plan.h"

#include "host/session/clip.h"

namespace orvelhost {

ChainPlan PlanChain(const Host& host, const Look& look, const AudioFormat& format,
                    const std::optional<ClipMeasurement>& measurement) {
  const boost::intrusive_ptr<Clip> clip(new Clip("", format));
  if (!look.mode.empty()) clip->SetAdjustmentsMode(look.mode);
  clip->SetMeasurement(measurement);
  ChainPlan plan;
  clip->SetMeasurer([&plan] { plan.needsMeasurement = true; });
  const auto models = ApplySettings(look.preset, look.settings, look.mode, host, clip);
  plan.needsRemixMap = clip->WantsRemix();
  plan.chain = clip->Chain();
  return plan;
}

}  // namespace orvelhost
