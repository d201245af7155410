#include "settings/data_type.h"

namespace OptimizeInterface {

DataType::DataType(std::string name, int size) : name_(std::move(name)), size_(size) {
  if (size < 1) throw DataTypeException("invalid size");
}

std::string DataType::Describe() const {
  return name_ + " : " + TypeName() + "[" + std::to_string(size_) + "] {" + MinText() + ".." + MaxText() + "}";
}

std::vector<std::string> DataType::SplitValues(const std::string& text) const {
  static const char* const WHITE_SPACE = " \t\r\n\v\f";
  std::vector<std::string> tokens;
  std::size_t start = text.find_first_not_of(WHITE_SPACE);
  while (start != std::string::npos) {
    const std::size_t end = text.find_first_of(WHITE_SPACE, start);
    tokens.push_back(text.substr(start, end == std::string::npos ? std::string::npos : end - start));
    start = end == std::string::npos ? end : text.find_first_not_of(WHITE_SPACE, end);
  }
  if (static_cast<int>(tokens.size()) != size_) throw DataTypeException("invalid size");
  return tokens;
}

void DataType::CheckReadable(int element) const {
  if (element < 0 || element >= size_) throw DataTypeException("index out of bounds");
  if (!initialized_) throw DataTypeException("not initialized");
}

}  // namespace OptimizeInterface
