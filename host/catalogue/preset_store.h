#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "host/session/host.h"
#include "orvel/orvel.h"

namespace orvelhost {

/// Why a preset or a template cannot be found, saved or removed, in one line for a person.
class PresetError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Whether a preset that is stored under this name is a template's default.
bool IsDefaultName(const std::string& name);

/// Whether a name that nothing bears as it is written means what bears it in other capitals.
enum class Capitals { kAny, kAsWritten };

/// What a person asked for in words: a guid, or a name as it is stored, as it is shown or in
/// English.
struct PresetQuery {
  std::string name;
  std::string modeID;  ///< empty: in every mode
  orvel::Guid config;  ///< null: under every template
  Capitals capitals = Capitals::kAny;
};

/// The presets and templates in the person's preset folder, through the running library. Main
/// thread only.
class PresetStore {
 public:
  /// Raises PresetError when the preset folder cannot be read or made.
  explicit PresetStore(const Host& host);

  /// Those of one mode, or of all with an empty id: by mode, the modes in their order; the
  /// factory's template and what was made under it first; then by the shown names, the default
  /// preset first.
  std::vector<orvel::ConfigPreset> GetTemplates(const std::string& modeID) const;
  std::vector<orvel::UserPreset> GetPresets(const std::string& modeID) const;

  /// The template under which a preset was made.
  orvel::ConfigPreset GetTemplate(const orvel::UserPreset& preset) const;

  /// The template that comes with the library.
  orvel::ConfigPreset GetFactoryTemplate(const std::string& modeID) const;

  /// Whether it comes with the library, and so is neither replaced nor removed.
  bool IsFactory(const orvel::ConfigPreset& configuration) const;
  bool IsFactory(const orvel::UserPreset& preset) const;

  /// Raise PresetError when nothing fits, and when several do; the message then lists them.
  orvel::UserPreset FindPreset(const PresetQuery& query) const;
  orvel::ConfigPreset FindTemplate(const PresetQuery& query) const;

  /// The preset with this guid under this template; false, with `preset` as it was, when there is
  /// none.
  bool FindPreset(const orvel::Guid& guid, const orvel::Guid& config,
                  orvel::UserPreset& preset) const;

  /// Why the preset cannot be saved under its name: a name that is refused, or that of another
  /// preset, unless `replace` is set and that one may go. Empty when it can.
  std::string FindFault(const orvel::UserPreset& preset, bool replace) const;

  /// Saves the preset. With `replace`, another one of its name goes. Raises PresetError, with all
  /// as it was.
  void Save(const orvel::UserPreset& preset, bool replace) const;

  /// Those whose place a save would take: one of its guid, and those that are stored or shown under
  /// its name, among the presets of its template.
  std::vector<orvel::UserPreset> FindReplaced(const orvel::UserPreset& preset) const;

  /// Raises PresetError, with all as it was.
  void Remove(const orvel::UserPreset& preset) const;

  /// A preset as messages name it: the name, the mode and the guid, and the template unless it is
  /// the factory's.
  std::string Describe(const orvel::UserPreset& preset) const;

 private:
  [[noreturn]] void Fail(const std::string& what) const;

  const Host& host_;
  boost::intrusive_ptr<orvel::PresetsCache> cache_;
};

}  // namespace orvelhost
