#include "settings/boolean.h"

namespace OptimizeInterface {

Boolean::Boolean(std::string name, int size) : DataType(std::move(name), size), values_(size, false) {}

void Boolean::Parse(const std::string& text) {
  std::vector<bool> parsed;
  for (const std::string& token : SplitValues(text)) {
    if (token != "true" && token != "false") throw DataTypeException("could not parse boolean: " + token);
    parsed.push_back(token == "true");
  }
  SetValues(parsed);
}

std::string Boolean::ToString() const {
  std::string text;
  for (std::size_t i = 0; i < values_.size(); ++i) {
    if (i > 0) text += ' ';
    text += values_[i] ? "true" : "false";
  }
  return text;
}

void Boolean::SetValues(const std::vector<bool>& values) {
  if (static_cast<int>(values.size()) != Size()) throw DataTypeException("invalid size");
  values_ = values;
  MarkInitialized();
}

bool Boolean::Value(int element) const {
  CheckReadable(element);
  return values_[element];
}

}  // namespace OptimizeInterface
