#pragma once

#include <filesystem>
#include <functional>
#include <string_view>

#include "platform/automation.h"
#include "platform/printers.h"

namespace quillan {

/// The program's own export engine, in process: creates objects of the type "Rendix.Engine", which
/// export tables and plain text.
///
/// An engine has the properties of `ExportOptions` and these members:
/// - `ExportTable`(method, table): "CSV", "TXT" (tabs between the columns), "HTML", "PRINTER" or
///   "PREVIEW"; the table has the members of `GridTable`; hidden columns are left out, and all but
///   those whose headers `ColumnList` names, separated by commas, unless it is empty;
/// - `ExportText`(method, text) and `ExportTextFile`(method, path): "TXT", "HTML", "PRINTER" or
///   "PREVIEW";
/// - `ExportMethods`(kind of item) and `SentToMethods`(): dictionaries from method to display name
///   with the members `Keys`, `Item`, `Count` and `RemoveAll`; there are no send-to methods;
/// - `MethodName`(method).
///
/// An empty method means `FileFormat`. `TargetFilename` is relative to `InitDir`, or the title if
/// it is empty, and gets the method's extension if it has none; unless `SkipFilenameSelection` is
/// true, the user then chooses the file. Afterwards it is the path of the file written. An existing
/// file is replaced only by a complete one. Exports return false if the user cancels.
///
/// An engine throws `automation::Error` for other members, methods and items and for a file that
/// cannot be read or written.
class RendixServer final : public automation::Server {
 public:
  /// Lets the user choose a file, with a suggestion; an empty path if the user cancels.
  using ChooseFile = std::function<std::filesystem::path(const std::filesystem::path& suggestion)>;

  /// `printers` must outlive the server and its engines.
  RendixServer(Printers& printers, ChooseFile choose_file)
      : printers_(printers), choose_file_(std::move(choose_file)) {}

  automation::ObjectRef CreateObject(std::string_view programmatic_identifier) override;

 private:
  Printers& printers_;
  ChooseFile choose_file_;
};

}  // namespace quillan
