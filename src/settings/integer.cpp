#include "settings/integer.h"

#include "frame/string_conversions.h"

namespace OptimizeInterface {

Integer::Integer(std::string name, int size, std::int32_t min, std::int32_t max)
    : DataType(std::move(name), size), values_(size, 0), min_(min), max_(max) {}

void Integer::Parse(const std::string& text) {
  std::vector<std::int32_t> parsed;
  for (const std::string& token : SplitValues(text)) {
    try {
      parsed.push_back(ToInt(token));
    } catch (const string_conversion_error&) {
      throw DataTypeException("could not parse integer: " + token);
    }
  }
  SetValues(parsed);
}

std::string Integer::ToString() const {
  std::string text;
  for (std::size_t i = 0; i < values_.size(); ++i) {
    if (i > 0) text += ' ';
    text += ToText(values_[i]);
  }
  return text;
}

std::string Integer::MinText() const { return ToText(min_); }
std::string Integer::MaxText() const { return ToText(max_); }

void Integer::SetValues(const std::vector<std::int32_t>& values) {
  if (static_cast<int>(values.size()) != Size()) throw DataTypeException("invalid size");
  for (const std::int32_t value : values) {
    if (value < min_ || value > max_) throw DataTypeException("value out of bounds");
  }
  values_ = values;
  MarkInitialized();
}

std::int32_t Integer::Value(int element) const {
  CheckReadable(element);
  return values_[element];
}

}  // namespace OptimizeInterface
