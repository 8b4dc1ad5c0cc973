#include "suite/export_engine.h"

#include <array>
#include <utility>

#include "platform/program.h"
#include "platform/text/ascii.h"
#include "suite/export_menus.h"

namespace quillan {
namespace {

using automation::Value;

struct ItemRow {
  std::string_view name;  // The end of the names of the engine's members.
  int kind;               // As `BestExportMethod` takes it.
};
// In the order of ExportEngine::Item.
constexpr std::array<ItemRow, 9> kItems = {{{"Table", kTableItems},
                                            {"RTF", kTextItems},
                                            {"Text", kTextItems},
                                            {"TextFile", kTextItems},
                                            {"EMFFile", kChartItems},
                                            {"Chart", kChartItems},
                                            {"Map", kChartItems},
                                            {"Picture", kPictureItems},
                                            {"ImageFile", kPictureItems}}};

Value Call(automation::Object& engine, std::string_view member, std::vector<Value> arguments) {
  return engine.Call(member, arguments);
}

bool IsMail(std::string_view send_to) {
  return text::ToUpperAscii(send_to).find(".MAPIMAIL") != std::string::npos;
}

}  // namespace

ExportEngine::ExportEngine(automation::Server& server, const Printers& printers,
                           MessageBox& messages, ProgramInfo program)
    : server_(server), printers_(printers), messages_(messages), program_(std::move(program)) {
  Reset();
}

Value ExportEngine::SendTo(const std::string& file, const std::string& send_to) {
  const ObjectRef engine = StartEngine(OnFailure::kShowMessage);
  if (!engine) return {};
  PushOptions(*this, *engine);
  Value answer = Call(*engine, "SendTo", {file, send_to});
  Reset();
  return answer;
}

std::vector<std::string> ExportEngine::ExportMethods(int item_kind) {
  const ObjectRef engine = StartEngine(OnFailure::kSilent);
  if (!engine) return {};
  return MethodKeys(Call(*engine, "ExportMethods", {item_kind}));
}

std::string ExportEngine::MethodName(const std::string& method) {
  const ObjectRef engine = StartEngine(OnFailure::kSilent);
  return engine ? ToText(Call(*engine, "MethodName", {method})) : std::string();
}

ExportEngine::ObjectRef ExportEngine::SendToMethods() {
  const ObjectRef engine = StartEngine(OnFailure::kSilent);
  return engine ? ToObject(Call(*engine, kSendToMethods, {})) : nullptr;
}

std::string ExportEngine::BestExportMethod(int item_kind, std::string_view send_to) {
  switch (item_kind) {
    case kTableItems:
    case kPictureItems:
    case kChartItems:
      return IsMail(send_to) ? "MHTML" : "HTML";
    case kTextItems:
      return "TXT";
    default:
      return {};
  }
}

void ExportEngine::LoadExportsMenu(const ObjectRef& menu, const ObjectRef& toolbar,
                                   const std::string& prefix, int item_kind) {
  if (const ObjectRef engine = StartEngine(OnFailure::kSilent)) {
    FillExportMenu(engine, MenuContent::kExports, item_kind, menu, toolbar, prefix);
  }
}

void ExportEngine::LoadSendToMenu(const ObjectRef& menu, const ObjectRef& toolbar,
                                  const std::string& prefix) {
  if (const ObjectRef engine = StartEngine(OnFailure::kSilent)) {
    FillExportMenu(engine, MenuContent::kSendTo, 0, menu, toolbar, prefix);
  }
}

bool ExportEngine::NoPrinters() {
  if (printers_.AnyInstalled()) return false;
  messages_.Show(
      "You do not have a Printer installed.\r\nYou must install a Printer before you can print.",
      kDisplayName, MessageButtons::kOk, MessageIcon::kCritical);
  return true;
}

ExportEngine::ObjectRef ExportEngine::StartEngine(OnFailure on_failure) {
  std::int32_t error = automation::kCannotCreateObject;
  try {
    if (ObjectRef engine = server_.CreateObject(kExportEngineType)) return engine;
  } catch (const automation::Error& failure) {
    error = failure.number();
  }
  if (on_failure == OnFailure::kShowMessage) {
    messages_.Show(
        "Cannot start Tarrowby Export Engine.\r\nYou may need to reinstall the Tarrowby "
        "software.\r\n\r\nError= " +
            std::to_string(error),
        program_.file_description, MessageButtons::kOk, MessageIcon::kExclamation);
  }
  return nullptr;
}

bool ExportEngine::Print(Item item, const Value& content, bool preview) {
  return Export(item, content, preview ? "PREVIEW" : "PRINTER");
}

bool ExportEngine::Export(Item item, const Value& content, const std::string& method) {
  const ObjectRef engine = StartEngine(OnFailure::kShowMessage);
  if (!engine) return false;
  PushOptions(*this, *engine);
  const std::string member = "Export" + std::string(kItems[item].name);
  const bool succeeded = ToBoolean(Call(*engine, member, {method, content}));
  Reset();
  TargetFilename = ToText(engine->Get("TargetFilename"));
  return succeeded;
}

bool ExportEngine::ExportAndSend(Item item, const Value& content, const std::string& send_to) {
  if (TargetFilename.empty()) TargetFilename = (program_.folder / "Export").string();
  std::string method;
  if (const int kind = kItems[item].kind; kind == kTextItems) {
    SelectMethod = true;
    if (FileFormat.empty()) FileFormat = "txt";
    if (IsMail(send_to) && text::EqualsIgnoringCase(FileFormat, "HTML")) FileFormat = "MHTML";
    method = FileFormat;
  } else {
    method = BestExportMethod(kind, send_to);
    const bool is_mail_content = text::EqualsIgnoringCase(send_to, "MailContent");
    FileFormat = is_mail_content ? "MHTML" : method;
    SelectMethod = !is_mail_content;
  }
  SkipFilenameSelection = true;
  Quiet = true;
  const bool sent =
      Export(item, content, method) && automation::ToBoolean(SendTo(TargetFilename, send_to));
  Reset();
  return sent;
}

}  // namespace quillan
