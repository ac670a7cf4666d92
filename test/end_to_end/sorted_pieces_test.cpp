#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <npar/analysis.h>

#include <fstream>
#include <nlohmann/json.hpp>

#include "support/analysis_handle.h"
#include "support/arrow_data.h"
#include "support/json_schema.h"

namespace {

using nlohmann::json;
using testing::HasSubstr;

TEST(SortedPiecesTest, SumsOfPiecesTellWhatTheirRecordsTell) {
  const std::vector<double> values = {1, 2, 2, 2, 3, 5, 5, 8, 9, 9};
  const std::vector<std::int8_t> groups = {1, 1, 2, 1, 2, 1, 2, 2, 2, 1};
  const auto read = [&](AnalysisHandle& analysis, std::size_t first, std::size_t end) {
    const auto from = static_cast<std::ptrdiff_t>(first);
    const auto to = static_cast<std::ptrdiff_t>(end);
    analysis.Set({{"independent", "x"}, {"by", "g"}, {"test", "mann-whitney"}});
    analysis.Read({{"x", "g", BytesOf<double>({values.begin() + from, values.begin() + to})},
                   {"g", "c", BytesOf<std::int8_t>({groups.begin() + from, groups.begin() + to})}});
  };
  AnalysisHandle whole;
  read(whole, 0, values.size());
  ASSERT_EQ(whole.Run(), NPAR_A_OK) << whole.Error();
  AnalysisHandle joined;
  joined.Set({{"independent", "x"}, {"by", "g"}, {"test", "mann-whitney"}});
  const void* sums = nullptr;
  size_t length = 0;
  EXPECT_EQ(npar_analysis_sum_piece(joined.Get(), &sums, &length), NPAR_A_STATE) << "no piece";
  EXPECT_EQ(npar_analysis_add_sums(joined.Get(), nullptr, 0), NPAR_A_USAGE);
  const std::size_t ends[] = {0, 2, 7, values.size()};  // between equal values twice
  for (std::size_t i = 0; i + 1 < std::size(ends); ++i) {
    AnalysisHandle piece;
    read(piece, ends[i], ends[i + 1]);
    ASSERT_EQ(npar_analysis_sum_piece(piece.Get(), &sums, &length), NPAR_A_OK) << piece.Error();
    ASSERT_EQ(npar_analysis_add_sums(joined.Get(), sums, length), NPAR_A_OK) << joined.Error();
    EXPECT_EQ(npar_analysis_add_sums(joined.Get(), sums, length - 1), NPAR_A_INPUT);
  }
  ArrowStreamOfData stream({{"x", "g", BytesOf<double>({1})}});
  EXPECT_EQ(npar_analysis_read_stream(joined.Get(), stream.Stream()), NPAR_A_STATE);
  ASSERT_EQ(joined.Run(), NPAR_A_OK) << joined.Error();
  const json report = json::parse(joined.Result("json"));
  EXPECT_EQ(SchemaBreach(report, json::parse(std::ifstream("schema/report.schema.json"))), "");
  const json& test = report["tests"][0];
  const json expected = json::parse(whole.Result("json"))["tests"][0];
  for (const char* key : {"statistics", "significance", "decision", "effectSize", "condition"}) {
    EXPECT_EQ(test[key], expected[key]);
  }
  EXPECT_EQ(test["made"], "from sorted ranges, 3 pieces");
  for (const char* form : {"text", "html", "markdown", "latex", "csv"}) {
    EXPECT_THAT(joined.Result(form), HasSubstr("Mann-Whitney")) << form;
  }
  const char* text = nullptr;
  EXPECT_EQ(npar_analysis_result(joined.Get(), "document", &text, nullptr), NPAR_A_USAGE);
  EXPECT_EQ(joined.Run(), NPAR_A_STATE) << "the sums are used up";
}

}  // namespace
