#pragma once

#include <map>
#include <string>

#include <boost/signals2/connection.hpp>
#include <boost/signals2/signal.hpp>

#include "orvel/core/export.h"
#include "orvel/core/first_exception.h"
#include "orvel/core/ref_counted.h"
#include "orvel/definitions/param_definition.h"
#include "orvel/definitions/section_definition.h"

namespace orvel {

/// What the operations of a section model that give an int return. Any other value that is not 0 is
/// a failure too, with a meaning of the host's own.
enum SectionModelStatus : int {
  kStatus_Success = 0,        ///< done
  kStatus_NoSuchModel = 3,    ///< there is no section model
  kStatus_Tolerated = 4,      ///< a value was read, and may be used like after a success
  kStatus_ValuesDiffer = 5,   ///< the clips hold different values
  kStatus_WriteUnderWay = 8,  ///< refused: a write is under way on this model already
};

/// The model of one section, for one clip or several. Values are normalized, 0..1 over the
/// parameter's range. Main thread only.
class ORVEL_EXPORT SectionModelInterface : public virtual RefCountedObject {
 public:
  /// (param id, normalized value); the id -1 stands for all parameters.
  using ChangeSignal = boost::signals2::signal<void(int paramID, float value), CallEverySlot>;

  ~SectionModelInterface() override;

  /// The number of model parameters; their ids are 0 to one less.
  virtual int GetNumParams() const = 0;

  /// What is known of a parameter; a default-built definition for an unknown id.
  virtual ParamDefinition GetParamDefinition(int index) = 0;

  /// True when `definition` was filled.
  virtual bool GetSectionDefinition(SectionDefinition& definition) const = 0;

  /// Sets one parameter. What is outside 0..1 may be refused or limited.
  virtual int SetParamNormalized(int paramID, float normalized) = 0;

  /// Sets several parameters in one step: id to value.
  virtual int SetParamsNormalized(const std::map<int, float>& values) = 0;

  /// Reads one parameter. After a failure `normalized` may be as it was.
  virtual int GetParamNormalized(int paramID, float& normalized) const = 0;

  /// The value in the parameter's unit; false, for an unknown id for example, when there is none.
  virtual bool ToPhysical(int paramID, float normalized, float& physical) const = 0;

  /// The way back; false when there is none.
  virtual bool ToNormalized(int paramID, float physical, float& normalized) const = 0;

  /// The section's model id.
  virtual std::string GetName() = 0;

  /// The slot is called after each change of a parameter.
  virtual boost::signals2::connection RegisterForModelChanges(
      const ChangeSignal::slot_type& slot) = 0;

  /// Says whether a panel or the like is using the model now.
  virtual void SetActive(bool active) = 0;

  /// What was said last; false at first.
  virtual bool IsActive() const = 0;

  /// The id of the adjustments mode that the model belongs to.
  virtual std::string GetAdjustmentsMode() = 0;

  /// Holds change signals back until the matching resume; calls nest.
  virtual void SuspendSignaling() = 0;

  /// What was held back is sent when the resume has `sendSignals` set, and forgotten otherwise; how
  /// the flags of nested resumes combine is up to the implementing model.
  virtual void ResumeSignaling(bool sendSignals) = 0;
};

}  // namespace orvel
