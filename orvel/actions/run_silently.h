#pragma once

#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "orvel/core/first_exception.h"
#include "orvel/models/orvel_model.h"

namespace orvel {

/// Takes a step while the model's signalling is suspended, and then lets it send, also when the
/// step throws.
template <typename Step>
void RunSilently(const boost::intrusive_ptr<OrvelModel>& model, Step step) {
  FirstException failure;
  failure.Catch([&model] { model->SuspendSignaling(); });
  failure.Catch(step);
  failure.Catch([&model] { model->ResumeSignaling(true); });
  failure.Rethrow();
}

}  // namespace orvel
