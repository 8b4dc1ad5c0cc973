#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "platform/automation.h"

namespace quillan {

/// The program that makes an export.
struct ProgramInfo {
  std::string file_description;  ///< The program's name; also the title of message boxes.
  int major_version = 0;
  int minor_version = 0;
  int revision = 0;
  std::filesystem::path folder;  ///< Of the program.
};

/// The options of one export, under the export engine's names; the engine defines which values each
/// takes. In a new object all are empty; `ExportEngine::Reset` sets the values noted here.
struct ExportOptions {
  std::string ProgramName;     ///< The program's file description.
  std::string ProgramVersion;  ///< Major, minor and revision, with dots between them.
  std::string Title;
  std::string SubTitle;
  std::string Paragraph;
  std::string Footer;
  std::int32_t ImageHeight = 0;  ///< 400.
  std::int32_t ImageWidth = 0;   ///< 640.
  std::string ImageFormat;       ///< "GIF".
  std::string FileFormat;
  std::int32_t Orientation = 0;  ///< 1.
  std::string TargetFilename;    ///< After an export, the file that the engine wrote.
  std::string InitDir;
  std::string ColumnList;
  bool SelectMethod = false;           ///< Kept by `Reset`.
  bool SkipFieldSelection = false;     ///< Kept by `Reset`.
  bool SkipFilenameSelection = false;  ///< Kept by `Reset`.
  bool Quiet = false;                  ///< Kept by `Reset`.
  std::string DefaultPrinter;
};

/// Sets `options` to their defaults, all but the four that are kept.
void ResetOptions(ExportOptions& options, const ProgramInfo& program);

/// The option with the engine's name for it; nothing if it does not exist.
std::optional<automation::Value> GetOption(const ExportOptions& options, std::string_view name);

/// Sets the option with the engine's name for it; false if it does not exist.
bool PutOption(ExportOptions& options, std::string_view name, const automation::Value& value);

/// Writes every option to the engine's property of the same name, in the order above. Throws
/// `automation::Error`.
void PushOptions(const ExportOptions& options, automation::Object& engine);

}  // namespace quillan
