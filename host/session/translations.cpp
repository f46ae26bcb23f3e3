#include "host/session/translations.h"

#include <map>
#include <stdexcept>
#include <string>
#include <system_error>

#include "host/audio/audio_error.h"
#include "host/session/text_file.h"
#include "orvel/orvel.h"

namespace orvelhost {

void LoadTranslations(const std::filesystem::path& file) {
  using teskcore::serialization::JSONObject;
  std::error_code error;
  if (!std::filesystem::exists(file, error)) {
    orvel::Localizer::Get().SetLookup({});
    return;
  }
  if (!std::filesystem::is_regular_file(file, error)) {
    throw AudioError("read", file, "it is no regular file");  // a pipe would be waited for
  }
  const auto document = teskcore::serialization::JSONParse(ReadTextFile(file));
  const auto* members = boost::any_cast<JSONObject>(document.get());
  if (members == nullptr) {
    throw std::runtime_error(Quoted(file) + " holds no JSON object of translations");
  }
  std::map<std::string, std::u16string> texts;
  for (const auto& [path, value] : *members) {
    const auto* text = boost::any_cast<std::string>(value.get());
    if (text == nullptr) {
      throw std::runtime_error(Quoted(file) + " gives '" + path + "' something that is no text");
    }
    texts[path] = orvel::UTF8to16(*text);
  }
  orvel::Localizer::Get().SetLookup([texts](const std::string& path, std::u16string& text) {
    const auto found = texts.find(path);
    if (found != texts.end()) text = found->second;
    return found != texts.end();
  });
}

}  // namespace orvelhost
