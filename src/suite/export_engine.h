#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/automation.h"
#include "platform/message_box.h"
#include "platform/printers.h"
#include "suite/export_options.h"

namespace quillan {

/// The programmatic identifier of the export engine.
inline constexpr std::string_view kExportEngineType = "Rendix.Engine";

// The kinds of item for which the engine lists its methods. Source: the engine's own numbers.
inline constexpr int kTableItems = 0;
inline constexpr int kTextItems = 1;
inline constexpr int kPictureItems = 2;
inline constexpr int kChartItems = 3;

/// Prints, exports and sends through the suite's export engine, the automation server
/// "Rendix.Engine".
///
/// Set the inherited options, then call a member; it pushes the options to a new engine object and
/// restores their defaults, so they apply to that call only. If the engine cannot be started, the
/// Print, Export, ExportAndSend and `SendTo` members show a message box, the others do not; every
/// member then has an empty result. A Print, Export or `SendTo` member keeps the options for
/// another attempt, an ExportAndSend member restores their defaults. An error that the engine
/// raises is thrown as `automation::Error`, except by the menu loaders, and leaves the options as
/// they are.
class ExportEngine : public ExportOptions {
 public:
  using ObjectRef = automation::ObjectRef;

  /// The first three must outlive the object.
  ExportEngine(automation::Server& server, const Printers& printers, MessageBox& messages,
               ProgramInfo program);

  /// Gives the options their defaults; `SelectMethod`, `SkipFieldSelection`,
  /// `SkipFilenameSelection` and `Quiet` keep their values. The constructor calls it.
  void Reset() { ResetOptions(*this, program_); }

  /// Each prints its item, or shows it as printed when `preview` is true. Tables, charts, maps and
  /// pictures are automation objects; the others are texts or the paths of files. True when the
  /// engine reports success.
  bool PrintTable(const ObjectRef& table, bool preview) { return Print(kTable, table, preview); }
  bool PrintRTF(const std::string& rtf, bool preview) { return Print(kRtf, rtf, preview); }
  bool PrintText(const std::string& text, bool preview) { return Print(kText, text, preview); }
  bool PrintTextFile(const std::string& file, bool preview) {
    return Print(kTextFile, file, preview);
  }
  bool PrintEMFFile(const std::string& file, bool preview) {
    return Print(kEmfFile, file, preview);
  }
  bool PrintChart(const ObjectRef& chart, bool preview) { return Print(kChart, chart, preview); }
  bool PrintMap(const ObjectRef& map, bool preview) { return Print(kMap, map, preview); }
  bool PrintPicture(const ObjectRef& picture, bool preview) {
    return Print(kPicture, picture, preview);
  }
  bool PrintImageFile(const std::string& file, bool preview) {
    return Print(kImageFile, file, preview);
  }

  /// Each exports its item by `method`, one of `ExportMethods`; `TargetFilename` then holds the
  /// file written. True when the engine reports success.
  bool ExportTable(const ObjectRef& table, const std::string& method) {
    return Export(kTable, table, method);
  }
  bool ExportRTF(const std::string& rtf, const std::string& method) {
    return Export(kRtf, rtf, method);
  }
  bool ExportText(const std::string& text, const std::string& method) {
    return Export(kText, text, method);
  }
  bool ExportTextFile(const std::string& file, const std::string& method) {
    return Export(kTextFile, file, method);
  }
  bool ExportEMFFile(const std::string& file, const std::string& method) {
    return Export(kEmfFile, file, method);
  }
  bool ExportChart(const ObjectRef& chart, const std::string& method) {
    return Export(kChart, chart, method);
  }
  bool ExportMap(const ObjectRef& map, const std::string& method) {
    return Export(kMap, map, method);
  }
  bool ExportPicture(const ObjectRef& picture, const std::string& method) {
    return Export(kPicture, picture, method);
  }
  bool ExportImageFile(const std::string& file, const std::string& method) {
    return Export(kImageFile, file, method);
  }

  /// Each exports its item to `TargetFilename` (while that is empty, "Export" in the program's
  /// folder) in the form that suits `send_to`, one of `SendToMethods`, and sends the file. True
  /// when the engine reports success for both. `TargetFilename` is empty afterwards.
  /// `SelectMethod`, `SkipFilenameSelection` and `Quiet` keep the values that the call gives them.
  /// RTF and text take `FileFormat` as the form, "txt" while it is empty.
  bool ExportAndSendTable(const ObjectRef& table, const std::string& send_to) {
    return ExportAndSend(kTable, table, send_to);
  }
  bool ExportAndSendChart(const ObjectRef& chart, const std::string& send_to) {
    return ExportAndSend(kChart, chart, send_to);
  }
  bool ExportAndSendMap(const ObjectRef& map, const std::string& send_to) {
    return ExportAndSend(kMap, map, send_to);
  }
  bool ExportAndSendPicture(const ObjectRef& picture, const std::string& send_to) {
    return ExportAndSend(kPicture, picture, send_to);
  }
  bool ExportAndSendRTF(const std::string& rtf, const std::string& send_to) {
    return ExportAndSend(kRtf, rtf, send_to);
  }
  bool ExportAndSendEMFFile(const std::string& file, const std::string& send_to) {
    return ExportAndSend(kEmfFile, file, send_to);
  }
  bool ExportAndSendText(const std::string& text, const std::string& send_to) {
    return ExportAndSend(kText, text, send_to);
  }

  /// Sends the file by one of `SendToMethods`; the engine's answer.
  automation::Value SendTo(const std::string& file, const std::string& send_to);

  /// The keys of the methods by which the engine exports items of this kind.
  std::vector<std::string> ExportMethods(int item_kind);
  /// The engine's display name of a method.
  std::string MethodName(const std::string& method);
  /// The engine's dictionary of send-to methods, from method key to display name; null without an
  /// engine.
  ObjectRef SendToMethods();
  /// The method that suits an item of this kind best: "HTML" or, by mail, "MHTML" for tables,
  /// pictures and charts, "TXT" for text, empty for other kinds.
  static std::string BestExportMethod(int item_kind, std::string_view send_to);

  /// Fill `menu` with the methods for exporting items of a kind, or with those for sending.
  /// `FillExportMenu` says what the menu may be and what `toolbar` and `prefix` are for.
  void LoadExportsMenu(const ObjectRef& menu, const ObjectRef& toolbar = nullptr,
                       const std::string& prefix = "Export:", int item_kind = kTableItems);
  void LoadSendToMenu(const ObjectRef& menu, const ObjectRef& toolbar = nullptr,
                      const std::string& prefix = "SendTo:");

  /// Whether no printer is installed; if so, a message box says it.
  bool NoPrinters();

 private:
  // Rows of the table of items.
  enum Item { kTable, kRtf, kText, kTextFile, kEmfFile, kChart, kMap, kPicture, kImageFile };
  enum class OnFailure { kSilent, kShowMessage };

  ObjectRef StartEngine(OnFailure on_failure);
  bool Print(Item item, const automation::Value& content, bool preview);
  bool Export(Item item, const automation::Value& content, const std::string& method);
  bool ExportAndSend(Item item, const automation::Value& content, const std::string& send_to);

  automation::Server& server_;
  const Printers& printers_;
  MessageBox& messages_;
  ProgramInfo program_;
};

}  // namespace quillan
