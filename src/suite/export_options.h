#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "platform/automation.h"

namespace quillan {

/// What an export tells of the program that makes it.
struct ProgramInfo {
  std::string file_description;  ///< The program's name; also the title of message boxes.
  int major_version = 0;
  int minor_version = 0;
  int revision = 0;
  std::filesystem::path folder;  ///< Where the program stands.
};

/// The options of one export, under the names that the export engine gives them; what each takes
/// beside the values below is the engine's to say. A new object has them all empty;
/// `ExportEngine::Reset` gives the values noted here.
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

/// Gives `options` their defaults, all but the four that are kept.
void ResetOptions(ExportOptions& options, const ProgramInfo& program);

/// Writes every option to the engine's property of the same name, in the order above. Throws
/// `automation::Error`.
void PushOptions(const ExportOptions& options, automation::Object& engine);

}  // namespace quillan
