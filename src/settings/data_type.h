// The typed description of one search setting: its name, how many values it has, whether one has
// been set, and how its values are read from and written to text.
#pragma once

#include <string>
#include <vector>

#include "frame/zephrin_exception.h"

namespace OptimizeInterface {

class DataType {
 public:
  class DataTypeException : public ZephrinException {
   public:
    using ZephrinException::ZephrinException;
  };

  // Throws DataTypeException("invalid size") for a size below 1.
  DataType(std::string name, int size);
  virtual ~DataType() = default;

  // Sets every value from text with one token per value, separated by white space. On failure the
  // object is left as it was.
  virtual void Parse(const std::string& text) = 0;
  // The values, joined by one blank.
  virtual std::string ToString() const = 0;
  virtual std::string TypeName() const = 0;
  virtual std::string MinText() const = 0;
  virtual std::string MaxText() const = 0;

  // "name : type[size] {min..max}"
  std::string Describe() const;

  const std::string& Name() const { return name_; }
  int Size() const { return size_; }
  bool Initialized() const { return initialized_; }

 protected:
  // The tokens of `text`, which must be exactly Size() of them.
  std::vector<std::string> SplitValues(const std::string& text) const;
  // Throws unless `element` is a value of this variable and a value has been set.
  void CheckReadable(int element) const;
  void MarkInitialized() { initialized_ = true; }

 private:
  std::string name_;
  int size_;
  bool initialized_ = false;
};

}  // namespace OptimizeInterface
