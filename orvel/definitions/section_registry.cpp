#include "orvel/definitions/section_registry.h"

#include <map>

namespace orvel::factory {
namespace {

// Made on first use: sections register while the library is loaded, in whatever order.
std::map<std::string, DefinitionBuilder>& Builders() {
  static auto& builders = *new std::map<std::string, DefinitionBuilder>;  // never destroyed
  return builders;
}

std::map<std::string, ModelCreator>& Creators() {
  static auto& creators = *new std::map<std::string, ModelCreator>;  // never destroyed
  return creators;
}

ModelCreator& GenericCreator() {
  static auto& creator = *new ModelCreator;  // never destroyed
  return creator;
}

// A copy, so that a creator may replace itself while it runs.
ModelCreator FindCreator(const std::string& modelID) {
  const auto found = Creators().find(modelID);
  return found == Creators().end() ? GenericCreator() : found->second;
}

}  // namespace

bool RegisterModelDefinition(const std::string& modelID, const DefinitionBuilder& builder) {
  return Builders().try_emplace(modelID, builder).second;
}

bool RegisterModelClass(const std::string& modelID, const ModelCreator& creator) {
  return Creators().try_emplace(modelID, creator).second;
}

void SetGenericFactoryFunction(const ModelCreator& creator) { GenericCreator() = creator; }

bool CreateSectionModelDefinition(const std::string& modelID, const PropList& configuration,
                                  SectionDefinition& definition) {
  const auto found = Builders().find(modelID);
  if (found == Builders().end()) return false;
  definition = found->second(configuration);
  return true;
}

bool CreateModelForClips(const std::string& modelID, const std::string& context,
                         const PropList& configuration,
                         const boost::intrusive_ptr<SessionHandlerInterface>& sessionHandler,
                         const MixTypeClipModels& clips, bool flag,
                         boost::intrusive_ptr<SectionModelInterface>& model) {
  SectionDefinition definition;
  CreateSectionModelDefinition(modelID, configuration, definition);  // unknown: stays empty
  const ModelCreator creator = FindCreator(modelID);
  if (!creator) return false;
  creator(context, definition, sessionHandler, clips, flag, model);
  return true;
}

}  // namespace orvel::factory
