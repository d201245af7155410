// A search setting of one or more truth values, written "true" or "false".
#pragma once

#include <string>
#include <vector>

#include "settings/data_type.h"

namespace OptimizeInterface {

class Boolean : public DataType {
 public:
  Boolean(std::string name, int size);

  void Parse(const std::string& text) override;
  std::string ToString() const override;
  std::string TypeName() const override { return "boolean"; }
  std::string MinText() const override { return "false"; }
  std::string MaxText() const override { return "true"; }

  // Sets all values at once; their number must be Size().
  void SetValues(const std::vector<bool>& values);
  bool Value(int element) const;

 private:
  std::vector<bool> values_;
};

}  // namespace OptimizeInterface
