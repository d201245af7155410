// A search setting of one or more 32-bit integers, each within the same inclusive range.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "settings/data_type.h"

namespace OptimizeInterface {

class Integer : public DataType {
 public:
  Integer(std::string name, int size, std::int32_t min, std::int32_t max);

  void Parse(const std::string& text) override;
  std::string ToString() const override;
  std::string TypeName() const override { return "integer"; }
  std::string MinText() const override;
  std::string MaxText() const override;

  // Sets all values at once; their number must be Size() and each must lie within Min()..Max().
  void SetValues(const std::vector<std::int32_t>& values);
  std::int32_t Value(int element) const;
  std::int32_t Min() const { return min_; }
  std::int32_t Max() const { return max_; }

 private:
  std::vector<std::int32_t> values_;
  std::int32_t min_;
  std::int32_t max_;
};

}  // namespace OptimizeInterface
