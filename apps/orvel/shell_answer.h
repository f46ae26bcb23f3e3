#pragma once

#include <string>
#include <vector>

#include "orvel/orvel.h"

namespace orvelcli {

/// What a command of the shell answers: a line for people, and an object.
struct Answer {
  std::string text;
  teskcore::serialization::JSONValue json;
  bool hasFailed = false;  ///< in part; `json` has an "error"
};

/// The words, separated by ", ".
std::string Join(const std::vector<std::string>& words);

/// An answer with one member.
template <typename Value>
Answer MakeAnswer(const std::string& text, const char* key, const Value& value) {
  Answer answer{text, {}};
  teskcore::serialization::AddToObject(answer.json, key, teskcore::serialization::JSONValue(value));
  return answer;
}

}  // namespace orvelcli
