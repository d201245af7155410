#include "settings/settings.h"

#include <array>
#include <fstream>
#include <optional>

#include "frame/string_conversions.h"
#include "frame/tee_stream.h"
#include "settings/boolean.h"
#include "settings/integer.h"
#include "settings/search_settings_catalogue.h"

namespace OptimizeInterface {

namespace {

std::unique_ptr<DataType> MakeVariable(const SearchSettingDescription& setting) {
  const std::string name(setting.name);
  if (setting.type == SettingType::boolean) return std::make_unique<Boolean>(name, setting.size);
  return std::make_unique<Integer>(name, setting.size, setting.min, setting.max);
}

// One line of a settings file: the name before the first '=' and the value behind it. A blank
// line or the end of the file has no name.
struct FileLine {
  bool has_name = false;
  std::string name;
  std::string value;
};

FileLine ReadFileLine(std::istream& file) {
  FileLine line;
  std::string text;
  if (!std::getline(file, text)) return line;
  const std::size_t separator = text.find('=');
  if (separator == std::string::npos) {
    if (text.find_first_not_of(" \t\r\n\v\f") != std::string::npos) {
      throw Settings::IO_Exception("seperator missing ('=')");
    }
    return line;
  }
  line.has_name = true;
  line.name = text.substr(0, separator);
  line.value = text.substr(separator + 1);
  return line;
}

}  // namespace

Settings::Settings() {
  variables_.reserve(SEARCH_SETTING_COUNT);
  for (const SearchSettingDescription& setting : SEARCH_SETTINGS) variables_.push_back(MakeVariable(setting));
}

Settings::Settings(CurrentValues) : Settings() {
  for (int i = 0; i < SEARCH_SETTING_COUNT; ++i) {
    const SearchSettingDescription& setting = SEARCH_SETTINGS[i];
    if (setting.type == SettingType::boolean) {
      static_cast<Boolean&>(*variables_[i]).SetValues({*setting.boolean});
    } else {
      static_cast<Integer&>(*variables_[i]).SetValues({setting.integer, setting.integer + setting.size});
    }
  }
}

Settings Settings::ReadFile(const std::string& path) {
  std::ifstream file(path);
  if (!file) throw IO_Exception("could not open file: " + path);
  Settings settings;
  std::optional<Settings> fallback;  // the current values, made when the first line is missing
  std::optional<FileLine> pending;
  int line_number = 0;
  try {
    for (int i = 0; i < settings.Count(); ++i) {
      DataType& variable = *settings.variables_[i];
      if (!pending) {
        pending = ReadFileLine(file);
        ++line_number;
      }
      if (pending->has_name && pending->name == variable.Name()) {
        variable.Parse(pending->value);
        pending.reset();
        continue;
      }
      if (!fallback) {
        fallback.emplace(current);
        Out << "Expected variable: " << variable.Name() << ";\n"
            << "Received variable: " << (pending->has_name ? pending->name : std::string("invalid")) << "\n";
      }
      const std::string value = fallback->variables_[i]->ToString();
      Out << "Warning: Initialized missing variable <" << variable.Name() << "> with default value ('" << value
          << "')\n";
      variable.Parse(value);
    }
  } catch (const DataType::DataTypeException& error) {
    Out.Flush();
    const std::string reason = error.Text().empty() ? "" : " (" + error.Text() + ")";
    throw InvalidData("Parse error in line #" + ToText(line_number) + reason);
  }
  Out.Flush();
  return settings;
}

void Settings::WriteFile(const std::string& path) const {
  std::ofstream file(path);
  if (!file) throw IO_Exception("could not open file: " + path);
  file << AllText();
  file.close();
  if (file.fail()) throw IO_Exception("could not write file: " + path);
}

void Settings::Assign(const std::string& name, const std::string& text) {
  DataType& variable = Find(name);
  try {
    variable.Parse(text);
  } catch (const DataType::DataTypeException& error) {
    throw InvalidData("could not parse new value: " + error.Text());
  }
}

std::string Settings::ValueText(const std::string& name) const { return Find(name).ToString(); }

std::string Settings::AllText() const {
  std::string text;
  for (const std::unique_ptr<DataType>& variable : variables_) text += variable->Name() + "=" + variable->ToString() + "\n";
  return text;
}

void Settings::Apply() const {
  // Every value is read before the first global changes, so that a missing one changes nothing.
  std::array<std::array<std::int32_t, MAX_SETTING_VALUES>, SEARCH_SETTING_COUNT> values{};
  for (int i = 0; i < SEARCH_SETTING_COUNT; ++i) {
    for (int element = 0; element < SEARCH_SETTINGS[i].size; ++element) {
      values[i][element] = SEARCH_SETTINGS[i].type == SettingType::boolean ? GetBool(i) : GetInteger(i, element);
    }
  }
  for (int i = 0; i < SEARCH_SETTING_COUNT; ++i) {
    const SearchSettingDescription& setting = SEARCH_SETTINGS[i];
    if (setting.type == SettingType::boolean) {
      *setting.boolean = values[i][0] != 0;
    } else {
      for (int element = 0; element < setting.size; ++element) setting.integer[element] = values[i][element];
    }
  }
}

bool Settings::GetBool(int index) const {
  const auto* variable = dynamic_cast<const Boolean*>(&At(index));
  if (variable == nullptr) throw DataType::DataTypeException("not a boolean");
  return variable->Value(0);
}

std::int32_t Settings::GetInteger(int index, int element) const {
  const auto* variable = dynamic_cast<const Integer*>(&At(index));
  if (variable == nullptr) throw DataType::DataTypeException("not an integer");
  return variable->Value(element);
}

DataType& Settings::Find(const std::string& name) const {
  const int index = FindSearchSetting(name);
  if (index < 0) throw UnknownVariable("unknown variable: " + name);
  return *variables_[index];
}

const DataType& Settings::At(int index) const {
  if (index < 0 || index >= Count()) throw DataType::DataTypeException("index out of bounds");
  return *variables_[index];
}

}  // namespace OptimizeInterface
