#include "suite/export_engine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

#include "support/fakes.h"

namespace quillan {
namespace {

using automation::ObjectRef;
using automation::Value;
using testing::ElementsAre;
using testing::IsEmpty;

std::string Show(const Value& value) {
  if (const auto* truth = std::get_if<bool>(&value)) return *truth ? "yes" : "no";
  return automation::ToObject(value) ? "object" : automation::ToText(value);
}

// An object that notes what is asked of it in a log shared by the family, and answers as scripted;
// what it has no answer for fails.
class Recorder : public automation::Object {
 public:
  using Log = std::vector<std::string>;
  Recorder(Log& log, std::string type) : log_(log), type_(std::move(type)) {}

  std::string TypeName() const override { return type_; }
  Value Get(std::string_view property) override { return Answer(std::string(property)); }
  void Put(std::string_view property, const Value& value) override {
    log_.push_back(type_ + "." + std::string(property) + "=" + Show(value));
    answers[std::string(property)] = value;
  }
  Value Call(std::string_view member, std::span<Value> arguments) override {
    std::string call(member);
    for (Value& argument : arguments) {
      call += " " + Show(argument);
      argument = "written by the object";
    }
    log_.push_back(type_ + "." + call);
    if (answers.contains("file written")) answers["TargetFilename"] = answers["file written"];
    return answers.contains(call) ? answers[call] : Answer(std::string(member));
  }
  // A new object that this one answers `member` with.
  std::shared_ptr<Recorder> Child(const std::string& member, const std::string& type) {
    auto child = std::make_shared<Recorder>(log_, type);
    answers[member] = child;
    return child;
  }

  std::map<std::string, Value> answers;

 private:
  Value Answer(const std::string& member) {
    if (!answers.contains(member)) throw automation::Error(438, "no " + member);
    return answers[member];
  }

  Log& log_;
  std::string type_;
};

class ExportEngineTest : public testing::Test, public automation::Server, public Printers {
 protected:
  ObjectRef CreateObject(std::string_view identifier) override {
    EXPECT_EQ(identifier, "Rendix.Engine");
    if (!engine_) throw automation::Error(429, "not registered");
    return engine_;
  }
  bool AnyInstalled() const override { return has_printer_; }
  bool Print(const PrintJob&) override { return false; }

  // The calls of the engine since the last look, without the options.
  Recorder::Log Calls() {
    std::erase_if(log_,
                  [](const std::string& line) { return line.find('=') != std::string::npos; });
    return std::exchange(log_, {});
  }

  Recorder::Log log_;
  bool has_printer_ = true;
  test::ScriptedMessageBox boxes_;
  std::shared_ptr<Recorder> engine_ = std::make_shared<Recorder>(log_, "Engine");
  ExportEngine export_{*this, *this, boxes_, {"Quillan Settings", 4, 2, 17, "/opt/quillan"}};
};

TEST_F(ExportEngineTest, OptionsArePushedInOrderAndHoldForOneCall) {
  export_.Title = "Ports";
  export_.TargetFilename = "/tmp/a.htm";
  export_.Quiet = true;
  engine_->answers["ExportText"] = -1;
  engine_->answers["file written"] = "/tmp/b.htm";
  EXPECT_TRUE(export_.ExportText("body", "HTML"));
  EXPECT_THAT(
      log_,
      ElementsAre("Engine.ProgramName=Quillan Settings", "Engine.ProgramVersion=4.2.17",
                  "Engine.Title=Ports", "Engine.SubTitle=", "Engine.Paragraph=", "Engine.Footer=",
                  "Engine.ImageHeight=400", "Engine.ImageWidth=640", "Engine.ImageFormat=GIF",
                  "Engine.FileFormat=", "Engine.Orientation=1", "Engine.TargetFilename=/tmp/a.htm",
                  "Engine.InitDir=", "Engine.ColumnList=", "Engine.SelectMethod=no",
                  "Engine.SkipFieldSelection=no", "Engine.SkipFilenameSelection=no",
                  "Engine.Quiet=yes", "Engine.DefaultPrinter=", "Engine.ExportText HTML body"));
  EXPECT_EQ(export_.Title, "");
  EXPECT_TRUE(export_.Quiet);
  EXPECT_EQ(export_.TargetFilename, "/tmp/b.htm");
  engine_->answers.clear();
  EXPECT_THROW(export_.ExportText("t", "HTML"), automation::Error);
}

TEST_F(ExportEngineTest, EveryMemberIsForwardedToTheEngineUnderItsName) {
  const ObjectRef o = std::make_shared<Recorder>(log_, "Item");
  for (const char* item :
       {"Table", "RTF", "Text", "TextFile", "EMFFile", "Chart", "Map", "Picture", "ImageFile"}) {
    engine_->answers[std::string("Export") + item] = true;
  }
  EXPECT_TRUE(export_.PrintTable(o, true) && export_.PrintRTF("t", true) &&
              export_.PrintText("t", false) && export_.PrintTextFile("t", true) &&
              export_.PrintEMFFile("t", true) && export_.PrintChart(o, true) &&
              export_.PrintMap(o, true) && export_.PrintPicture(o, true) &&
              export_.PrintImageFile("t", true));
  EXPECT_THAT(Calls(),
              ElementsAre("Engine.ExportTable PREVIEW object", "Engine.ExportRTF PREVIEW t",
                          "Engine.ExportText PRINTER t", "Engine.ExportTextFile PREVIEW t",
                          "Engine.ExportEMFFile PREVIEW t", "Engine.ExportChart PREVIEW object",
                          "Engine.ExportMap PREVIEW object", "Engine.ExportPicture PREVIEW object",
                          "Engine.ExportImageFile PREVIEW t"));
}

TEST_F(ExportEngineTest, ExportAndSendChoosesTheFormByTheWayItIsSent) {
  const ObjectRef item = std::make_shared<Recorder>(log_, "Item");
  using Member = std::function<bool(const std::string&)>;
  const Member table = [&](const auto& to) { return export_.ExportAndSendTable(item, to); };
  const Member chart = [&](const auto& to) { return export_.ExportAndSendChart(item, to); };
  const Member map = [&](const auto& to) { return export_.ExportAndSendMap(item, to); };
  const Member rtf = [&](const auto& to) { return export_.ExportAndSendRTF("r", to); };
  const Member text = [&](const auto& to) { return export_.ExportAndSendText("t", to); };
  struct Row {
    Member send;
    const char *send_to, *file_format;          // As the caller gives them.
    const char *call, *pushed_format, *select;  // As the engine receives them.
  };
  for (const Row& row : {
           Row{table, "Excel.exe", "", "ExportTable HTML object", "HTML", "yes"},
           Row{chart, "x.MapiMail", "", "ExportChart MHTML object", "MHTML", "yes"},
           Row{map, "MAILCONTENT", "GIF", "ExportMap HTML object", "MHTML", "no"},
           Row{rtf, "MailContent", "", "ExportRTF txt r", "txt", "yes"},
           Row{text, "a", "html", "ExportText html t", "html", "yes"},
           Row{text, "x.mapimail", "html", "ExportText MHTML t", "MHTML", "yes"},
           Row{rtf, "x.MAPIMAIL", "RTF", "ExportRTF RTF r", "RTF", "yes"},
       }) {
    engine_->answers = {{row.call, true}, {"SendTo", true}};
    log_.clear();
    export_.FileFormat = row.file_format;
    EXPECT_TRUE(row.send(row.send_to)) << row.call;
    // The first of the two pushes.
    EXPECT_EQ(log_[9], std::string("Engine.FileFormat=") + row.pushed_format);
    EXPECT_EQ(log_[14], std::string("Engine.SelectMethod=") + row.select);
    EXPECT_EQ(log_[16], "Engine.SkipFilenameSelection=yes");
    EXPECT_EQ(log_[17], "Engine.Quiet=yes");
    EXPECT_THAT(Calls(),
                ElementsAre(std::string("Engine.") + row.call,
                            "Engine.SendTo /opt/quillan/Export " + std::string(row.send_to)));
    EXPECT_EQ(export_.TargetFilename, "");
  }

  EXPECT_EQ(ExportEngine::BestExportMethod(kTextItems, ".MAPIMAIL"), "TXT");
  EXPECT_EQ(ExportEngine::BestExportMethod(4, "a"), "");
  engine_->answers = {{"ExportText", false}};
  EXPECT_FALSE(export_.ExportAndSendText("t", "a"));
  EXPECT_THAT(Calls(), ElementsAre("Engine.ExportText txt t"));
}

TEST_F(ExportEngineTest, WithoutAnEngineOnlyTheCallsThatPrintExportOrSendComplain) {
  engine_ = nullptr;
  export_.Title = "kept";
  EXPECT_EQ(export_.ExportMethods(0), std::vector<std::string>());
  export_.LoadSendToMenu(std::make_shared<Recorder>(log_, "Object"));
  EXPECT_THAT(boxes_.messages, IsEmpty());

  EXPECT_FALSE(export_.PrintText("t", false));
  EXPECT_EQ(export_.SendTo("f", "a"), Value());
  EXPECT_EQ(export_.Title, "kept");
  EXPECT_FALSE(export_.ExportAndSendText("t", "a"));
  EXPECT_EQ(boxes_.messages.size(), 3U);
  EXPECT_EQ(boxes_.messages[0].title, "Quillan Settings");
  EXPECT_EQ(boxes_.messages[0].icon, MessageIcon::kExclamation);
  EXPECT_EQ(boxes_.messages[0].text,
            "Cannot start Tarrowby Export Engine.\r\nYou may need to reinstall the Tarrowby "
            "software.\r\n\r\nError= 429");
}

TEST_F(ExportEngineTest, AMissingPrinterIsReportedUnderTheProgramsName) {
  EXPECT_FALSE(export_.NoPrinters());
  EXPECT_THAT(boxes_.messages, IsEmpty());
  has_printer_ = false;
  EXPECT_TRUE(export_.NoPrinters());
  ASSERT_EQ(boxes_.messages.size(), 1U);
  EXPECT_EQ(boxes_.messages[0].title, "Quillan");
  EXPECT_EQ(boxes_.messages[0].icon, MessageIcon::kCritical);
  EXPECT_THAT(boxes_.messages[0].text, testing::StartsWith("You do not have a Printer installed."));
}

class ExportMenuTest : public ExportEngineTest {
 protected:
  ExportMenuTest() {
    const auto methods = engine_->Child("ExportMethods", "Methods");
    methods->answers = {{"Keys", std::vector<std::string>{"HTML", "TXT"}},
                        {"Item HTML", "Web page"},
                        {"Item TXT", "Text"},
                        {"RemoveAll", {}}};
    const auto commands = toolbar_->Child("Commands", "Commands");
    button_ = commands->Child("AddToolButton", "Button");
    images_ = commands->Child("Images", "Images");
    menu_->Child("CommandBar", "Bar")->Child("Controls", "Controls")->Child("Add", "Entry");
  }

  // What was done to toolbar and menu since the last look.
  Recorder::Log Steps() {
    std::erase_if(log_, [](const std::string& line) {
      return (line.starts_with("Engine.") || line.starts_with("Methods.")) &&
             line != "Methods.RemoveAll";
    });
    return std::exchange(log_, {});
  }

  std::shared_ptr<Recorder> toolbar_ = std::make_shared<Recorder>(log_, "Toolbar");
  std::shared_ptr<Recorder> menu_ = std::make_shared<Recorder>(log_, "ICommandPopupMenu");
  std::shared_ptr<Recorder> button_;
  std::shared_ptr<Recorder> images_;
};

TEST_F(ExportMenuTest, APopupTakesTheKeysOfNewButtons) {
  images_->answers["Item TXT"] = "picture";
  export_.LoadExportsMenu(menu_, toolbar_);
  EXPECT_THAT(Steps(),
              ElementsAre("Commands.AddToolButton Export:HTML Web page", "Button.Tag=HTML",
                          "Images.Item Export:HTML", "Images.Item HTML", "Controls.Add Export:HTML",
                          "Commands.AddToolButton Export:TXT Text", "Button.Tag=TXT",
                          "Images.Item Export:TXT", "Images.Item TXT", "Button.Image=picture",
                          "Controls.Add Export:TXT", "Methods.RemoveAll"));
}

TEST_F(ExportMenuTest, AToolTakesTheNamesOfNewButtons) {
  const auto tool = std::make_shared<Recorder>(log_, "ISSTool");
  tool->Child("Menu", "Menu")->Child("Tools", "Tools")->Child("Add", "Entry");
  button_->answers["Name"] = "Button1";
  export_.LoadExportsMenu(tool, toolbar_, "X:", 1);
  EXPECT_EQ(log_[0], "Engine.ExportMethods 1");
  const Recorder::Log steps = Steps();
  EXPECT_EQ(steps[0], "Commands.AddToolButton X:HTML Web page");
  EXPECT_THAT(steps, testing::Contains("Tools.Add Button1").Times(2));
  // Neither kind of menu can be filled without a toolbar.
  export_.LoadExportsMenu(tool);
  export_.LoadExportsMenu(menu_);
  EXPECT_THAT(Steps(), IsEmpty());
}

TEST_F(ExportMenuTest, TheSendToMenuHasGroupsAndImagesByTheFirstWord) {
  const std::pair<const char*, const char*> methods[] = {
      {"C:\\bin\\a.MAPIMail", "Mail Recipient"},
      {"MailContent", "Mail text"},
      {"x/MyDocuments", "My Documents"},
      {"C:\\Office\\EXCEL.EXE", "Microsoft Excel 2003"},
      {"excel.exe.lnk", "Fax"},
  };
  const auto dictionary = engine_->Child("SentToMethods", "Methods");
  std::vector<std::string> keys;
  for (const auto& [key, name] : methods) {
    keys.emplace_back(key);
    dictionary->answers[std::string("Item ") + key] = name;
  }
  dictionary->answers["Keys"] = keys;
  images_->answers["Item Excel"] = "picture";
  export_.LoadSendToMenu(menu_, toolbar_);
  Recorder::Log steps = Steps();
  EXPECT_THAT(steps, testing::IsSupersetOf({"Images.Item SendTo:Mail", "Images.Item Mail",
                                            "Images.Item SendTo:Excel", "Images.Item Excel",
                                            "Button.Image=picture", "Images.Item SendTo:Fax",
                                            "Methods.RemoveAll"}));
  EXPECT_EQ(steps[0], "Commands.AddToolButton SendTo:C:\\bin\\a.MAPIMail Mail Recipient");
  // The second to fourth entry, each after it has been added, begin a group.
  std::string groups;
  for (const std::string& step : steps) {
    if (step.starts_with("Controls.Add")) groups += "-";
    if (step == "Entry.BeginGroup=yes") groups += "group";
  }
  EXPECT_EQ(groups, "--group-group-group-");
}

TEST_F(ExportMenuTest, AnArrayKeepsItsFirstItemAsTheTemplate) {
  menu_ = std::make_shared<Recorder>(log_, "Items");
  menu_->answers = {{"LBound", 1}, {"UBound", 2}};
  menu_->Child("Item", "Entry");
  engine_->answers["ExportMethods"] = std::vector<std::string>{"HTML", "GIF"};
  engine_->answers["MethodName HTML"] = "Web page";
  export_.LoadExportsMenu(menu_);
  EXPECT_THAT(Steps(), ElementsAre("Items.Unload 2", "Items.Load 2", "Items.Item 2",
                                   "Entry.Caption=Web page", "Entry.Tag=HTML", "Entry.Visible=yes",
                                   "Entry.Enabled=yes", "Items.Load 3", "Items.Item 3",
                                   "Entry.Caption=", "Entry.Tag=GIF", "Entry.Visible=yes",
                                   "Entry.Enabled=yes"));
}

}  // namespace
}  // namespace quillan
