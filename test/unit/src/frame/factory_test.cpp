#include "frame/factory.h"

#include <gtest/gtest.h>

#include "frame/component_builder.h"
#include "frame/progress_listener.h"
#include "planning/progress.h"
#include "support/recording_host.h"
#include "support/variables.h"

namespace {

TEST(NPARFactory, MakesAnAlgorithmThatItsCallerOwns) {
  QDSettings settings;
  QDVarList variables = VariableListBuilder().Continuous("a").Build();
  NPARFactory factory;
  const std::unique_ptr<QDCommon_700::IQDAlgorithm> algorithm(
      factory.CreateQDAlgorithm(settings, variables));
  ASSERT_NE(algorithm, nullptr);
  EXPECT_TRUE(factory.GetStatus().IsOK());
  EXPECT_FALSE(algorithm->IsExecuted());
  EXPECT_TRUE(factory.GetWarnings().empty());
  const NPARFactory copy(factory);
  EXPECT_EQ(copy.GetStatus(), factory.GetStatus());
}

TEST(NPARProgressListener, AnotherReportIsABadCast) {
  struct OtherReport final : ProgressReport {
    int DiscreteMeasure(const std::string&) const override { return 0; }
    double ScaleMeasure(const std::string&) const override { return 0.0; }
  };
  RecordingHost host;
  NPARComponentBuilder component(host.Context(), host.Host());
  OtherReport report;
  EXPECT_THROW(NPARProgressListener(&component).Report(report), std::bad_cast);
}

}  // namespace
