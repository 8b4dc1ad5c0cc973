#include "suite/rendix_server.h"

#include <cerrno>
#include <fstream>
#include <memory>
#include <system_error>
#include <utility>

#include "platform/files.h"
#include "suite/export_documents.h"
#include "suite/export_engine.h"
#include "suite/export_menus.h"
#include "suite/export_methods.h"
#include "suite/export_options.h"
#include "suite/table_reader.h"

namespace quillan {
namespace {

using automation::Value;

constexpr std::int32_t kLandscape = 2;
constexpr int kNoItems = -1;  // The kind of no item.

[[noreturn]] void Fail(std::int32_t number, const std::string& text) {
  throw automation::Error(number, text);
}

std::string ReadFile(const std::filesystem::path& file) {
  std::string reason = "The file does not exist.";
  try {
    if (auto text = DiskFiles().ReadTextFile(file)) return std::move(*text);
  } catch (const FileError& error) {
    reason = error.what();
  }
  Fail(automation::kPathAccess, "Could not read " + file.string() + ": " + reason);
}

// Replaces `file` at once, so that a failure leaves the old one.
void WriteFile(const std::filesystem::path& file, std::string_view bytes) {
  std::filesystem::path unfinished = file;
  unfinished += ".part";
  std::ofstream stream(unfinished, std::ios::binary);
  stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  stream.close();
  // A failed stream does not always say why.
  const int reason = stream ? 0 : errno != 0 ? errno : EIO;
  std::error_code error(reason, std::generic_category());
  if (!error) std::filesystem::rename(unfinished, file, error);
  if (!error) return;
  std::error_code ignored;
  std::filesystem::remove(unfinished, ignored);
  Fail(automation::kPathAccess, "Could not write " + file.string() + ": " + error.message());
}

// A title as a file name.
std::string FileNameOf(std::string title) {
  for (char& c : title) {
    if (c == '/' || c == '\\' || static_cast<unsigned char>(c) < ' ') c = '_';
  }
  return title;
}

// What is exported: a table, or text.
struct Content {
  int kind = kTextItems;
  automation::ObjectRef table;
  std::string text;
};

class RendixEngine final : public automation::Object {
 public:
  RendixEngine(Printers& printers, RendixServer::ChooseFile choose_file)
      : printers_(printers), choose_file_(std::move(choose_file)) {}

  std::string TypeName() const override { return "Rendix.Engine"; }

  Value Get(std::string_view property) override {
    if (const auto value = GetOption(options_, property)) return *value;
    automation::RefuseMember(TypeName(), property);
  }

  void Put(std::string_view property, const Value& value) override {
    if (!PutOption(options_, property, value)) automation::RefuseMember(TypeName(), property);
  }

  Value Call(std::string_view member, std::span<Value> arguments) override {
    if (member == kSendToMethods && arguments.empty()) return ExportMethodsOf(kNoItems);
    if (arguments.size() == 1) {
      const auto* kind = std::get_if<std::int32_t>(&arguments[0]);
      if (member == "ExportMethods") return ExportMethodsOf(kind != nullptr ? *kind : kNoItems);
      if (member == "MethodName") return std::string(ExportMethodName(ToText(arguments[0])));
    }
    if (arguments.size() == 2) {
      const std::string method = ToText(arguments[0]);
      if (member == "ExportTable") {
        const automation::ObjectRef table = ToObject(arguments[1]);
        if (table == nullptr) Fail(automation::kInvalidArgument, "There is no table to export.");
        return Export(method, {kTableItems, table, {}});
      }
      const std::string text = ToText(arguments[1]);
      if (member == "ExportText") return Export(method, {kTextItems, nullptr, text});
      if (member == "ExportTextFile") {
        return Export(method, {kTextItems, nullptr, ReadFile(text)});
      }
    }
    automation::RefuseMember(TypeName(), member);
  }

 private:
  bool Export(const std::string& method_key, const Content& content) {
    const std::string& key = method_key.empty() ? options_.FileFormat : method_key;
    const ExportMethod* method = FindExportMethod(key, content.kind);
    if (method == nullptr) {
      Fail(automation::kInvalidArgument,
           "There is no export method \"" + key + "\" for this item.");
    }
    if (method->extension.empty()) {
      return printers_.Print({options_.Title, MakeHtml(content), options_.DefaultPrinter,
                              options_.Orientation == kLandscape, method->key == "PREVIEW"});
    }
    const std::filesystem::path file = ChooseTarget(*method);
    if (file.empty()) return false;
    WriteFile(file, MakeDocument(*method, content));
    options_.TargetFilename = file.string();
    return true;
  }

  std::filesystem::path ChooseTarget(const ExportMethod& method) const {
    std::filesystem::path file = options_.TargetFilename;
    if (file.empty()) {
      file = options_.Title.empty() ? "Export" : FileNameOf(options_.Title);
      file += method.extension;
    } else if (!file.has_extension()) {
      file += method.extension;
    }
    file = std::filesystem::path(options_.InitDir) / file;
    return options_.SkipFilenameSelection ? file : choose_file_(file);
  }

  std::string MakeDocument(const ExportMethod& method, const Content& content) const {
    if (method.key == "HTML") return MakeHtml(content);
    if (content.table == nullptr) return content.text;
    TableReader reader(content.table, options_.ColumnList);
    return DelimitedDocument(method.key == "CSV" ? ',' : '\t',
                             [&](std::vector<std::string>& cells) { return reader.Next(cells); });
  }

  std::string MakeHtml(const Content& content) const {
    const PageTexts page{options_.Title, options_.SubTitle, options_.Paragraph, options_.Footer,
                         options_.ProgramName + " " + options_.ProgramVersion};
    if (content.table == nullptr) return HtmlDocument(page, content.text);
    TableReader reader(content.table, options_.ColumnList);
    return HtmlDocument(page, [&](std::vector<std::string>& cells) { return reader.Next(cells); });
  }

  Printers& printers_;
  RendixServer::ChooseFile choose_file_;
  ExportOptions options_;
};

}  // namespace

automation::ObjectRef RendixServer::CreateObject(std::string_view programmatic_identifier) {
  if (programmatic_identifier == kExportEngineType) {
    return std::make_shared<RendixEngine>(printers_, choose_file_);
  }
  Fail(automation::kCannotCreateObject,
       "There is no automation server \"" + std::string(programmatic_identifier) + "\".");
}

}  // namespace quillan
