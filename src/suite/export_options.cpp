#include "suite/export_options.h"

#include <array>
#include <string_view>
#include <utility>
#include <variant>

namespace quillan {
namespace {

using Field = std::variant<std::string ExportOptions::*, std::int32_t ExportOptions::*,
                           bool ExportOptions::*>;

// In the order in which the engine takes them.
constexpr std::array<std::pair<std::string_view, Field>, 19> kFields = {{
    {"ProgramName", &ExportOptions::ProgramName},
    {"ProgramVersion", &ExportOptions::ProgramVersion},
    {"Title", &ExportOptions::Title},
    {"SubTitle", &ExportOptions::SubTitle},
    {"Paragraph", &ExportOptions::Paragraph},
    {"Footer", &ExportOptions::Footer},
    {"ImageHeight", &ExportOptions::ImageHeight},
    {"ImageWidth", &ExportOptions::ImageWidth},
    {"ImageFormat", &ExportOptions::ImageFormat},
    {"FileFormat", &ExportOptions::FileFormat},
    {"Orientation", &ExportOptions::Orientation},
    {"TargetFilename", &ExportOptions::TargetFilename},
    {"InitDir", &ExportOptions::InitDir},
    {"ColumnList", &ExportOptions::ColumnList},
    {"SelectMethod", &ExportOptions::SelectMethod},
    {"SkipFieldSelection", &ExportOptions::SkipFieldSelection},
    {"SkipFilenameSelection", &ExportOptions::SkipFilenameSelection},
    {"Quiet", &ExportOptions::Quiet},
    {"DefaultPrinter", &ExportOptions::DefaultPrinter},
}};

const Field* FindField(std::string_view name) {
  for (const auto& [field_name, field] : kFields) {
    if (field_name == name) return &field;
  }
  return nullptr;
}

}  // namespace

void ResetOptions(ExportOptions& options, const ProgramInfo& program) {
  ExportOptions fresh;
  fresh.ProgramName = program.file_description;
  fresh.ProgramVersion = std::to_string(program.major_version) + "." +
                         std::to_string(program.minor_version) + "." +
                         std::to_string(program.revision);
  fresh.ImageHeight = 400;
  fresh.ImageWidth = 640;
  fresh.ImageFormat = "GIF";
  fresh.Orientation = 1;
  fresh.SelectMethod = options.SelectMethod;
  fresh.SkipFieldSelection = options.SkipFieldSelection;
  fresh.SkipFilenameSelection = options.SkipFilenameSelection;
  fresh.Quiet = options.Quiet;
  options = std::move(fresh);
}

std::optional<automation::Value> GetOption(const ExportOptions& options, std::string_view name) {
  const Field* field = FindField(name);
  if (field == nullptr) return std::nullopt;
  return std::visit([&](auto member) { return automation::Value(options.*member); }, *field);
}

bool PutOption(ExportOptions& options, std::string_view name, const automation::Value& value) {
  const Field* field = FindField(name);
  if (field == nullptr) return false;
  if (const auto* text = std::get_if<std::string ExportOptions::*>(field)) {
    options.*(*text) = automation::ToText(value);
  } else if (const auto* flag = std::get_if<bool ExportOptions::*>(field)) {
    options.*(*flag) = automation::ToBoolean(value);
  } else if (const auto* number = std::get_if<std::int32_t>(&value)) {
    options.*std::get<std::int32_t ExportOptions::*>(*field) = *number;
  }
  return true;
}

void PushOptions(const ExportOptions& options, automation::Object& engine) {
  for (const auto& [name, field] : kFields) {
    std::visit([&, property = name](auto member) { engine.Put(property, options.*member); }, field);
  }
}

}  // namespace quillan
