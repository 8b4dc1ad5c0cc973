#include <gmock/gmock.h>

#include <map>
#include <tuple>

#include "suite/export_engine.h"
#include "suite/grid_table.h"
#include "suite/rendix_server.h"
#include "support/fakes.h"
#include "support/temporary_folder.h"

namespace quillan {
namespace {

using automation::ObjectRef;
using automation::Value;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

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

class ExportEngineTest : public testing::Test, public automation::Server {
 protected:
  ObjectRef CreateObject(std::string_view identifier) override {
    EXPECT_EQ(identifier, "Rendix.Engine");
    if (!engine_) throw automation::Error(429, "not registered");
    return engine_;
  }

  // The calls of the engine since the last look, without the options.
  Recorder::Log Calls() {
    std::erase_if(log_,
                  [](const std::string& line) { return line.find('=') != std::string::npos; });
    return std::exchange(log_, {});
  }

  Recorder::Log log_;
  test::ScriptedMessageBox boxes_;
  std::shared_ptr<Recorder> engine_ = std::make_shared<Recorder>(log_, "Engine");
  test::FakePrinters printers_;
  ExportEngine export_{*this, printers_, boxes_, {"Quillan Settings", 4, 2, 17, "/opt/quillan"}};
};

TEST_F(ExportEngineTest, ExportAndSendChoosesTheFormByTheWayItIsSent) {
  const ObjectRef item = std::make_shared<Recorder>(log_, "Item");
  using Member = std::function<bool(const std::string&)>;
  const Member table = [&](const auto& to) { return export_.ExportAndSendTable(item, to); };
  const Member map = [&](const auto& to) { return export_.ExportAndSendMap(item, to); };
  const Member text = [&](const auto& to) { return export_.ExportAndSendText("t", to); };
  const struct {
    Member send;
    const char *send_to, *file_format;          // As the caller gives them.
    const char *call, *pushed_format, *select;  // As the engine receives them.
  } rows[] = {{table, "Excel.exe", "", "ExportTable HTML object", "HTML", "yes"},
              {map, "MAILCONTENT", "GIF", "ExportMap HTML object", "MHTML", "no"},
              {text, "a", "", "ExportText txt t", "txt", "yes"},
              {text, "x.mapimail", "html", "ExportText MHTML t", "MHTML", "yes"}};
  for (const auto& row : rows) {
    engine_->answers = {{row.call, true}, {"SendTo", true}};
    log_.clear();
    export_.FileFormat = row.file_format;
    EXPECT_TRUE(row.send(row.send_to)) << row.call;
    // The first of the two pushes.
    EXPECT_EQ(log_[9], std::string("Engine.FileFormat=") + row.pushed_format);
    EXPECT_EQ(log_[14], std::string("Engine.SelectMethod=") + row.select);
    EXPECT_THAT(Calls(),
                ElementsAre(std::string("Engine.") + row.call,
                            "Engine.SendTo /opt/quillan/Export " + std::string(row.send_to)));
    EXPECT_EQ(export_.TargetFilename, "");
  }

  engine_->answers = {{"ExportText", false}};
  EXPECT_FALSE(export_.ExportAndSendText("t", "a"));
  EXPECT_THAT(Calls(), ElementsAre("Engine.ExportText txt t"));
  for (const int kind : {kTableItems, kPictureItems, kChartItems}) {
    EXPECT_EQ(ExportEngine::BestExportMethod(kind, "MailContent"), "HTML") << kind;
    EXPECT_EQ(ExportEngine::BestExportMethod(kind, "C:\\x.MapiMail"), "MHTML") << kind;
  }
  EXPECT_EQ(ExportEngine::BestExportMethod(kTextItems, "x.mapimail"), "TXT");
  EXPECT_EQ(ExportEngine::BestExportMethod(4, ""), "");
}

TEST_F(ExportEngineTest, WithoutAnEngineOnlyTheCallsThatPrintExportOrSendComplain) {
  engine_ = nullptr;
  export_.Title = "kept";
  EXPECT_THAT(export_.ExportMethods(0), IsEmpty());
  EXPECT_THAT(boxes_.messages, IsEmpty());

  EXPECT_FALSE(export_.PrintText("t", false));
  EXPECT_EQ(export_.SendTo("f", "a"), Value());
  EXPECT_EQ(export_.Title, "kept");
  EXPECT_FALSE(export_.ExportAndSendText("t", "a"));
  ASSERT_EQ(boxes_.messages.size(), 3U);
  EXPECT_EQ(boxes_.messages[0].title, "Quillan Settings");
  EXPECT_THAT(boxes_.messages[0].text, testing::EndsWith("Error= 429"));
}

TEST_F(ExportEngineTest, AToolbarsMenuGetsAButtonForEachMethod) {
  const auto methods = engine_->Child("SentToMethods", "Methods");
  engine_->answers["ExportMethods"] = methods;
  methods->answers = {{"Keys", std::vector<std::string>{"b", "MailContent", "x/EXCEL.EXE"}},
                      {"Item b", "Web page"},
                      {"Item MailContent", "Mail text"},
                      {"Item x/EXCEL.EXE", "Microsoft Excel 2003"}};
  const auto toolbar = std::make_shared<Recorder>(log_, "Toolbar");
  const auto commands = toolbar->Child("Commands", "Commands");
  commands->Child("AddToolButton", "Button")->answers["Name"] = "button";
  commands->Child("Images", "Images")->answers = {{"Item Excel", "picture"}, {"Item b", "image"}};
  const auto popup = std::make_shared<Recorder>(log_, "ICommandPopupMenu");
  popup->Child("CommandBar", "Bar")->Child("Controls", "Controls")->Child("Add", "Entry");
  const auto tool = std::make_shared<Recorder>(log_, "ISSTool");
  tool->Child("Menu", "Menu")->Child("Tools", "Tools")->Child("Add", "Entry");
  // How the entries are added.
  for (const auto& [menu, sends, exports] :
       {std::tuple(popup, "Controls.Add SendTo:b", "Controls.Add Export:b"),
        {tool, "Tools.Add button", "Tools.Add button"}}) {
    log_.clear();
    export_.LoadSendToMenu(menu, toolbar);
    EXPECT_THAT(log_, testing::IsSupersetOf({"Commands.AddToolButton SendTo:MailContent Mail text",
                                             "Button.Tag=MailContent", sends,
                                             "Images.Item SendTo:Excel", "Button.Image=picture"}));
    EXPECT_THAT(log_, testing::Contains("Entry.BeginGroup=yes").Times(2));  // The last two.
    EXPECT_EQ(log_.back(), "Methods.RemoveAll");
    log_.clear();
    export_.LoadExportsMenu(menu, toolbar);
    EXPECT_THAT(log_, testing::IsSupersetOf({"Commands.AddToolButton Export:b Web page", exports,
                                             "Images.Item Export:b", "Button.Image=image"}));
    EXPECT_THAT(log_, Not(testing::Contains("Entry.BeginGroup=yes")));
  }
}

TEST_F(ExportEngineTest, AnArrayKeepsItsFirstItemAsTheTemplate) {
  const auto menu = std::make_shared<Recorder>(log_, "Items");
  menu->answers = {{"LBound", 1}, {"UBound", 2}};
  menu->Child("Item", "Entry");
  engine_->answers["ExportMethods"] = std::vector<std::string>{"HTML"};
  engine_->answers["MethodName HTML"] = "Web page";
  export_.LoadExportsMenu(menu);
  EXPECT_THAT(log_, testing::IsSupersetOf({"Items.Unload 2", "Items.Load 2", "Items.Item 2",
                                           "Entry.Caption=Web page", "Entry.Tag=HTML",
                                           "Entry.Visible=yes", "Entry.Enabled=yes"}));
  EXPECT_THAT(log_, Not(testing::Contains("Items.Unload 1")));
}

std::string_view CheckWord(CheckState state) {
  return state == CheckState::kChecked ? "yes" : "no";
}

// The client over the real engine, which exports a grid with a hidden column and a hidden row.
class RendixServerTest : public testing::Test {
 protected:
  RendixServerTest() {
    grid_.Reset(4, {{""}, {""}, {"", Alignment::kLeft, true}, {""}});
    const char* texts[4][4] = {{"Enabled", "Port  ", "Id", "Description"},
                               {"", "80", "1", "<b>Web</b>, \"http\""},
                               {"", "81", "3", "hidden"},
                               {"", "443", "2", "Züri\r\nhttps"}};
    for (int row = 0; row < 4; ++row) {
      for (int column = 0; column < 4; ++column) grid_.SetText(row, column, texts[row][column]);
    }
    grid_.SetCheck(1, 0, CheckState::kChecked);
    grid_.SetCheck(3, 0, CheckState::kUnchecked);
    grid_.SetFilter([](int row) { return row != 2; });
    table_ = std::make_shared<GridTable>(grid_, &CheckWord);
  }

  // Exports the grid without asking for a file; the file's content.
  std::string ExportGrid(const std::string& method, const std::string& target) {
    export_.TargetFilename = (folder_ / target).string();
    export_.SkipFilenameSelection = true;
    EXPECT_TRUE(export_.ExportTable(table_, method));
    return folder_.Read(std::filesystem::path(export_.TargetFilename).filename().string());
  }

  test::TemporaryFolder folder_;
  Grid grid_;
  std::shared_ptr<GridTable> table_;
  std::filesystem::path suggestion_, choice_;
  test::FakePrinters printers_;
  RendixServer server_{printers_, [this](const std::filesystem::path& suggestion) {
                         suggestion_ = suggestion;
                         return choice_;
                       }};
  test::ScriptedMessageBox boxes_;
  ExportEngine export_{server_, printers_, boxes_, {"Quillan", 1, 0, 0, folder_ / "program"}};
};

TEST_F(RendixServerTest, ATableBecomesTextOrOneSelfContainedPage) {
  const std::string rows = "yes,80,\"<b>Web</b>, \"\"http\"\"\"\r\nno,443,\"Züri\r\nhttps\"\r\n";
  EXPECT_EQ(ExportGrid("csv", "ports"),
            "\xEF\xBB\xBF"
            "Enabled,Port,Description\r\n" +
                rows);
  EXPECT_FALSE(std::filesystem::exists(folder_ / "ports.csv.part"));
  EXPECT_THAT(ExportGrid("TXT", "ports"), HasSubstr("Enabled\tPort\tDescription\r\nyes\t80\t"));
  export_.ColumnList = "description , PORT";
  EXPECT_EQ(ExportGrid("CSV", "some.txt").substr(3, 18), "Port,Description\r\n");
  export_.Title = "Ports & more";
  export_.Footer = "end";
  export_.Quiet = true;
  EXPECT_THAT(
      ExportGrid("HTML", "page.htm"),
      testing::AllOf(HasSubstr("<title>Ports &amp; more</title>"), HasSubstr("utf-8"),
                     HasSubstr("<th>Enabled</th><th>Port</th><th>Description</th>"),
                     HasSubstr("<td>80</td><td>&lt;b&gt;Web&lt;/b&gt;, &quot;http&quot;</td>"),
                     HasSubstr("content=\"Quillan 1.0.0\""), HasSubstr("<footer>end</footer>"),
                     Not(HasSubstr("<h2>")), Not(HasSubstr("http:")), Not(HasSubstr("https:"))));
  EXPECT_EQ(export_.Title + export_.Footer, "") << "they hold for one export";
  EXPECT_TRUE(export_.Quiet);
}

TEST_F(RendixServerTest, TextIsExportedAsItIsOrAsAPageOrPrinted) {
  folder_.Write("in.txt", "Z\xFCri <x>");  // Windows-1252.
  export_.InitDir = folder_.path().string();
  export_.TargetFilename = "ports";
  EXPECT_FALSE(export_.ExportText("t", "TXT")) << "no file was chosen";
  EXPECT_EQ(suggestion_, folder_ / "ports.txt");
  choice_ = folder_ / "chosen.txt";
  export_.InitDir = folder_.path().string();
  export_.TargetFilename = "";
  export_.Title = "a/b 1.5";
  EXPECT_TRUE(export_.ExportTextFile((folder_ / "in.txt").string(), "TXT"));
  EXPECT_EQ(suggestion_, folder_ / "a_b 1.5.txt");
  EXPECT_EQ(export_.TargetFilename, choice_.string());
  EXPECT_EQ(folder_.Read("chosen.txt"), "Züri <x>");
  export_.FileFormat = "html";
  export_.TargetFilename = (folder_ / "t").string();
  export_.SkipFilenameSelection = true;
  EXPECT_TRUE(export_.ExportText("1 < 2", ""));
  EXPECT_THAT(folder_.Read("t.html"), HasSubstr("<pre>1 &lt; 2</pre>"));

  EXPECT_THAT(export_.ExportMethods(kTextItems), ElementsAre("TXT", "HTML", "PRINTER", "PREVIEW"));
  export_.DefaultPrinter = "laser";
  export_.Orientation = 2;
  EXPECT_TRUE(export_.PrintText("t", false));
  EXPECT_EQ(printers_.jobs.at(0).printer, "laser");
  EXPECT_TRUE(printers_.jobs[0].landscape && !printers_.jobs[0].preview);
}

TEST_F(RendixServerTest, WhatItCannotDoIsAnErrorThatLeavesFilesAlone) {
  EXPECT_THROW(server_.CreateObject("Other.Engine"), automation::Error);
  EXPECT_THROW(export_.ExportChart(table_, "HTML"), automation::Error);
  EXPECT_THROW(export_.ExportTable(nullptr, "HTML"), automation::Error);
  export_.SkipFilenameSelection = true;
  EXPECT_THROW(export_.ExportText("t", "CSV"), automation::Error);
  EXPECT_THROW(export_.ExportTextFile((folder_ / "missing").string(), "TXT"), automation::Error);
  folder_.Write("full.csv/kept", "a folder of that name");
  export_.TargetFilename = (folder_ / "full.csv").string();
  EXPECT_THROW(export_.ExportTable(table_, "CSV"), automation::Error);
  EXPECT_FALSE(std::filesystem::exists(folder_ / "full.csv.part"));
}

}  // namespace
}  // namespace quillan
