#pragma once

#include <list>
#include <string>

#include <boost/function.hpp>
#include <boost/smart_ptr/intrusive_ptr.hpp>

#include "orvel/core/export.h"
#include "orvel/core/prop_list.h"
#include "orvel/definitions/section_definition.h"

namespace orvel {

class MixTypeClipModelInterface;
class SectionModelInterface;
class SessionHandlerInterface;

/// Clips in the order of the session.
using MixTypeClipModels = std::list<boost::intrusive_ptr<MixTypeClipModelInterface>>;

namespace factory {

/// Builds a section's definition from its configuration.
using DefinitionBuilder = boost::function<SectionDefinition(const PropList& configuration)>;

/// Makes the section model for the given clips and stores it in `model`. `context` and `flag` come
/// from whoever asked for the model: the top-level model gives the adjustments mode, and whether it
/// follows the selection.
using ModelCreator = boost::function<void(
    const std::string& context, const SectionDefinition& definition,
    const boost::intrusive_ptr<SessionHandlerInterface>& sessionHandler,
    const MixTypeClipModels& clips, bool flag, boost::intrusive_ptr<SectionModelInterface>& model)>;

/// Says how the definition of a section is built. Keeps the first builder given for a model id, and
/// tells whether this was it. Safe to call from static initialisers.
ORVEL_EXPORT bool RegisterModelDefinition(const std::string& modelID,
                                          const DefinitionBuilder& builder);

/// Says how the section models of this model id are made; otherwise the same.
ORVEL_EXPORT bool RegisterModelClass(const std::string& modelID, const ModelCreator& creator);

/// Replaces the creator for the model ids that have none of their own; an empty one takes it away.
ORVEL_EXPORT void SetGenericFactoryFunction(const ModelCreator& creator);

/// False, with `definition` as it was, when no builder is registered for the model id.
ORVEL_EXPORT bool CreateSectionModelDefinition(const std::string& modelID,
                                               const PropList& configuration,
                                               SectionDefinition& definition);

/// Hands the section's definition (an empty one for an unknown model id) to the model id's own
/// creator, else to the generic one. False, with `model` as it was, when there is neither. Whether
/// a model was made is up to the creator. A builder that was registered empty raises
/// `boost::bad_function_call`; an empty creator counts as none.
ORVEL_EXPORT bool CreateModelForClips(
    const std::string& modelID, const std::string& context, const PropList& configuration,
    const boost::intrusive_ptr<SessionHandlerInterface>& sessionHandler,
    const MixTypeClipModels& clips, bool flag, boost::intrusive_ptr<SectionModelInterface>& model);

}  // namespace factory
}  // namespace orvel
