#pragma once

#include <string>
#include <vector>

#include "host/render/result_model.h"

namespace npar_host {

/// A piece of a sentence; symbols of statistics are set in italics where there are any.
struct SentencePart {
  std::string text;
  bool isSymbol = false;
};

/// A test as a results section tells it, in the style of the APA (Publication Manual, 7th edition,
/// 6.36 to 6.52): "Sign test: drug1 and drug2 differed significantly, S = 9, N = 10, p = .004
/// (exact), r = .84."
[[nodiscard]] std::vector<SentencePart> SentenceParts(const ResultDocument& document,
                                                      const ResultTest& test);
[[nodiscard]] std::string Sentence(const ResultDocument& document, const ResultTest& test);

}  // namespace npar_host
