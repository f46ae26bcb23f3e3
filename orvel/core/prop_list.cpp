#include "orvel/core/prop_list.h"

#include <algorithm>
#include <utility>

namespace teskcore::proplist {
namespace {

using Child = std::shared_ptr<const PropList>;

template <typename T>
const T* Find(const std::map<std::string, PropList::Value>& values, const std::string& key) {
  const auto found = values.find(key);
  return found == values.end() ? nullptr : std::get_if<T>(&found->second);
}

bool SameValue(const PropList::Value& left, const PropList::Value& right) {
  const auto* leftChild = std::get_if<Child>(&left);
  const auto* rightChild = std::get_if<Child>(&right);
  if (leftChild != nullptr && rightChild != nullptr) return **leftChild == **rightChild;
  return left == right;
}

}  // namespace

bool PropList::GetValue(const std::string& key, float& value) const {
  const auto* held = Find<float>(values_, key);
  if (held != nullptr) value = *held;
  return held != nullptr;
}

bool PropList::GetValue(const std::string& key, std::uint32_t& value) const {
  const auto* held = Find<std::uint32_t>(values_, key);
  if (held != nullptr) value = *held;
  return held != nullptr;
}

bool PropList::GetValue(const std::string& key, std::vector<float>& value) const {
  const auto* held = Find<std::vector<float>>(values_, key);
  if (held != nullptr) {
    value = *held;
  } else {
    value.clear();
  }
  return held != nullptr;
}

bool PropList::GetValue(const std::string& key, PropList& child) const {
  const auto* held = Find<Child>(values_, key);
  if (held == nullptr) return false;
  // Keeps the subtree alive when `child` is this very list.
  const Child tree = *held;
  child = *tree;
  return true;
}

void PropList::SetValue(const std::string& key, float value) { values_[key] = value; }

void PropList::SetValue(const std::string& key, std::uint32_t value) { values_[key] = value; }

void PropList::SetValue(const std::string& key, std::vector<float> value) {
  values_[key] = std::move(value);
}

void PropList::SetValue(const std::string& key, const PropList& child) {
  values_[key] = std::make_shared<const PropList>(child);
}

void PropList::RemoveValue(const std::string& key) { values_.erase(key); }

bool operator==(const PropList& left, const PropList& right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](const auto& a, const auto& b) {
                      return a.first == b.first && SameValue(a.second, b.second);
                    });
}

}  // namespace teskcore::proplist
