#pragma once

#include <gtest/gtest.h>
#include <npar/analysis.h>

#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "support/arrow_data.h"

/// An analysis through the exported functions.
class AnalysisHandle {
 public:
  AnalysisHandle() { EXPECT_EQ(npar_analysis_create(&analysis), NPAR_A_OK); }
  ~AnalysisHandle() { npar_analysis_destroy(analysis); }
  AnalysisHandle(const AnalysisHandle&) = delete;
  AnalysisHandle& operator=(const AnalysisHandle&) = delete;

  [[nodiscard]] NparAnalysis* Get() const { return analysis; }
  void Set(const std::vector<std::pair<std::string, std::string>>& options) const {
    for (const auto& [option, value] : options) {
      EXPECT_EQ(npar_analysis_set(analysis, option.c_str(), value.c_str()), NPAR_A_OK) << Error();
    }
  }
  void Read(std::vector<ArrowData> columns, const ArrowCut& cut = {}) {
    stream = std::make_unique<ArrowStreamOfData>(std::move(columns), cut);
    EXPECT_EQ(npar_analysis_read_stream(analysis, stream->Stream()), NPAR_A_OK) << Error();
  }
  [[nodiscard]] uint32_t Run() const { return npar_analysis_run(analysis, nullptr, nullptr); }
  [[nodiscard]] std::string Result(const char* form) const {
    const char* text = nullptr;
    size_t length = 0;
    EXPECT_EQ(npar_analysis_result(analysis, form, &text, &length), NPAR_A_OK) << Error();
    return text == nullptr ? std::string() : std::string(text, length);
  }
  [[nodiscard]] nlohmann::json Error() const {
    return nlohmann::json::parse(npar_analysis_error(analysis));
  }

 private:
  NparAnalysis* analysis = nullptr;
  std::unique_ptr<ArrowStreamOfData> stream;
};
