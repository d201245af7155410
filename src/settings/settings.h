// A typed copy of all search settings, in file order. It is filled from the globals, from a
// settings file or by assignments, checked against each variable's type and range, and reaches
// the globals only through Apply. The search never uses it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "frame/zephrin_exception.h"
#include "settings/data_type.h"

namespace OptimizeInterface {

class Settings {
 public:
  class SettingsException : public ZephrinException {
   public:
    using ZephrinException::ZephrinException;
  };
  class InvalidData : public SettingsException {
   public:
    using SettingsException::SettingsException;
  };
  class IO_Exception : public SettingsException {
   public:
    using SettingsException::SettingsException;
  };
  class UnknownVariable : public SettingsException {
   public:
    using SettingsException::SettingsException;
  };

  struct CurrentValues {};
  static constexpr CurrentValues current{};

  // Every variable with its name, size and range, none initialized.
  Settings();
  // Every variable holding the value of its global.
  explicit Settings(CurrentValues);

  // Reads a settings file strictly in order. A variable whose line is missing keeps the value of
  // its global, with a warning on the log stream. Throws IO_Exception or InvalidData.
  static Settings ReadFile(const std::string& path);
  // Throws IO_Exception when the file can't be opened or written.
  void WriteFile(const std::string& path) const;

  // Throws UnknownVariable, or InvalidData when the text doesn't fit the variable.
  void Assign(const std::string& name, const std::string& text);
  // Throws UnknownVariable.
  std::string ValueText(const std::string& name) const;
  // "name=value\n" for every variable in order: the text of the settings file.
  std::string AllText() const;
  // Copies every value to its global; all of them or, if one is missing, none.
  void Apply() const;

  // Throw DataType::DataTypeException for a bad index or element, a variable of the other type,
  // or one with no value.
  bool GetBool(int index) const;
  std::int32_t GetInteger(int index, int element) const;

  int Count() const { return static_cast<int>(variables_.size()); }
  const DataType& Variable(int index) const { return *variables_[index]; }

 private:
  DataType& Find(const std::string& name) const;
  const DataType& At(int index) const;

  std::vector<std::unique_ptr<DataType>> variables_;
};

}  // namespace OptimizeInterface
