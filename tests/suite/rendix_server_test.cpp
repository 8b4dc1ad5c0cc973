#include "suite/rendix_server.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "platform/text/delimited_text.h"
#include "suite/export_engine.h"
#include "suite/grid_table.h"
#include "support/fakes.h"
#include "support/temporary_folder.h"

namespace quillan {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

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
    return Content(export_.TargetFilename);
  }
  static std::string Content(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
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

TEST_F(RendixServerTest, ATableBecomesTextThatReadsBack) {
  for (const auto& [method, separator] : {std::pair("csv", ','), std::pair("TXT", '\t')}) {
    const std::string utf8 = text::DecodeTable(ExportGrid(method, "ports"));
    text::DelimitedReader reader(utf8);
    EXPECT_EQ(reader.separator(), separator);
    text::DelimitedRecord record;
    std::vector<std::vector<std::string>> rows;
    while (reader.Next(record)) rows.push_back(record.fields);
    EXPECT_THAT(rows, ElementsAre(ElementsAre("Enabled", "Port", "Description"),
                                  ElementsAre("yes", "80", "<b>Web</b>, \"http\""),
                                  ElementsAre("no", "443", "Züri\r\nhttps")));
  }
  EXPECT_FALSE(std::filesystem::exists(folder_ / "ports.csv.part"));
  export_.ColumnList = "description , PORT";
  EXPECT_EQ(ExportGrid("CSV", "some.txt").substr(3, 18), "Port,Description\r\n");
}

TEST_F(RendixServerTest, ATableBecomesOneSelfContainedPage) {
  export_.Title = "Ports & more";
  export_.Footer = "end";
  const std::string html = ExportGrid("HTML", "page.htm");
  EXPECT_THAT(html, AllOf(HasSubstr("<title>Ports &amp; more</title>"), HasSubstr("utf-8"),
                          HasSubstr("<th>Enabled</th><th>Port</th><th>Description</th>"),
                          HasSubstr("<td>80</td><td>&lt;b&gt;Web&lt;/b&gt;, &quot;http&quot;</td>"),
                          HasSubstr("<footer>end</footer>"), Not(HasSubstr("<h2>")),
                          Not(HasSubstr("http:")), Not(HasSubstr("https:"))));
}

TEST_F(RendixServerTest, TextIsExportedAsItIsOrAsAPage) {
  folder_.Write("in.txt", "Z\xFCri <x>");  // Windows-1252.
  export_.SkipFilenameSelection = true;
  export_.InitDir = folder_.path().string();
  export_.Title = "a/b 1.5";
  EXPECT_TRUE(export_.ExportTextFile((folder_ / "in.txt").string(), "TXT"));
  EXPECT_EQ(export_.TargetFilename, (folder_ / "a_b 1.5.txt").string());
  EXPECT_EQ(Content(export_.TargetFilename), "Züri <x>");
  export_.FileFormat = "html";
  export_.TargetFilename = (folder_ / "t").string();
  EXPECT_TRUE(export_.ExportText("1 < 2", ""));
  EXPECT_THAT(Content(folder_ / "t.html"), HasSubstr("<pre>1 &lt; 2</pre>"));
}

TEST_F(RendixServerTest, TheUserChoosesTheFileOrCancels) {
  export_.TargetFilename = "ports";
  export_.InitDir = folder_.path().string();
  EXPECT_FALSE(export_.ExportTable(table_, "CSV"));
  EXPECT_EQ(suggestion_, folder_ / "ports.csv");
  choice_ = folder_ / "chosen.csv";
  EXPECT_TRUE(export_.ExportTable(table_, "CSV"));
  EXPECT_EQ(export_.TargetFilename, choice_.string());
  EXPECT_TRUE(std::filesystem::exists(choice_));
}

TEST_F(RendixServerTest, MethodsAreListedByKindAndPrintAsTheOptionsSay) {
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
