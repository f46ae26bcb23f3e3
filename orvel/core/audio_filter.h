#pragma once

#include <list>
#include <map>
#include <set>
#include <string>

#include <boost/function.hpp>
#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "orvel/core/export.h"
#include "orvel/core/ref_counted.h"

namespace teskaudiofilterhost {

/// The parameter values of one effect preset.
class ORVEL_EXPORT PresetData : public teskcore::utility::RefCountedObject {
 public:
  /// Keeps the values as `GetParamList` gives them.
  explicit PresetData(const std::list<float>& params) : params_(params) {}

  /// Stores the values in the effect's parameter order, each in the effect's normalised 0..1 scale.
  void GetParamList(std::list<float>& params) const { params = params_; }

 private:
  std::list<float> params_;
};

/// The factory presets of one effect.
class ORVEL_EXPORT PresetList : public teskcore::utility::RefCountedObject {
 public:
  /// Adds a preset; one of the same name is replaced.
  void AddPreset(const std::u16string& name, const std::list<float>& params);

  /// Replaces `names` by those of the presets.
  void GetPresetNames(std::set<std::u16string>& names) const;

  /// Null when there is no preset of that name.
  boost::intrusive_ptr<PresetData> GetPreset(const std::u16string& name) const;

 private:
  std::map<std::u16string, boost::intrusive_ptr<PresetData>> presets_;
};

/// An instance of an effect, as far as the library looks at one.
class ORVEL_EXPORT AudioFilter : public virtual teskcore::utility::RefCountedObject {
 public:
  /// The effect's factory presets; null when it has none.
  virtual boost::intrusive_ptr<PresetList> GetPresetList() const = 0;
};

/// Makes an effect by its component id; gives null for an id that it does not know.
using AudioFilterFactory =
    boost::function<boost::intrusive_ptr<AudioFilter>(const std::u16string& componentID)>;

namespace utility {

/// A new instance of the effect, or null when the registered factory does not know it or none is
/// registered.
ORVEL_EXPORT boost::intrusive_ptr<AudioFilter> CreateAudioFilter(const std::u16string& componentID);

/// Installs the host's effects; an empty factory takes them away.
ORVEL_EXPORT void RegisterAudioFilterFactory(const AudioFilterFactory& factory);

}  // namespace utility
}  // namespace teskaudiofilterhost
