#include "suite/application.h"

#include <gtest/gtest.h>

#include "suite/color_distribution.h"
#include "support/program_folder.h"

namespace quillan {
namespace {

TEST(ApplicationTest, FindsTheAddressInALabel) {
  const std::pair<const char*, const char*> cases[] = {
      {"router1 (10.0.0.1)", "10.0.0.1"},
      {"router1", ""},
      {"a.b.c.d", "a.b.c.d"},
      {"router1 (1.2.3.4) ", "router1 (1.2.3.4) "},
      {"1.2.3.4)", ""},
      {"a (1.2.3.4) (x)", "1.2.3.4) (x"},
  };
  for (const auto& [text, address] : cases) {
    EXPECT_EQ(Application::ValidateIP(text), address) << text;
  }
}

TEST(ApplicationTest, LooksUpTheHostNameOfAnEndpoint) {
  test::ProgramFolder program;
  program.suite.Run(
      "insert into FlowCorrelation (IPAddress, IPAddressSort, FullHostname) values "
      "('10.0.0.1', 10000000001, 'printer.example'), ('10.0.0.2', 10000000002, null)");
  Application application(program.database);
  EXPECT_EQ(application.LookupEndpointName("10.0.0.1"), "printer.example");
  EXPECT_EQ(application.LookupEndpointName("10.0.0.2"), "");
  EXPECT_EQ(application.LookupEndpointName("10.0.0.3"), "10.0.0.3");
  EXPECT_EQ(application.LookupEndpointName("it's"), "it's");
  program.suite.Run("drop table FlowCorrelation");
  EXPECT_EQ(application.LookupEndpointName("10.0.0.1"), "10.0.0.1");
}

TEST(ColorDistributionTest, ColorsRepeatAfterFifteenAndANegativeIndexBecomesZero) {
  std::int16_t index = -3;
  EXPECT_EQ(ColorDistribution().LookupColor(index), Rgb(255, 0, 0));
  EXPECT_EQ(index, 0);
  index = 29;
  EXPECT_EQ(ColorDistribution().LookupColor(index), Rgb(102, 102, 0));
}

}  // namespace
}  // namespace quillan
