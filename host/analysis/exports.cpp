// The functions of npar/analysis.h: checks for null, one guarded call into C++, one code.

#pragma GCC visibility push(default)
#include <npar/analysis.h>
#pragma GCC visibility pop

#include <atomic>
#include <exception>
#include <new>
#include <string>
#include <vector>

#include "host/analysis/analysis.h"
#include "host/analysis/failure.h"
#include "host/request/catalogue_json.h"
#include "host/request/word_list.h"

namespace {

using npar_host::Analysis;
using npar_host::UsageError;

constexpr const char* kNoFailure =
    R"({"code":0,"field":null,"message":"","remedy":null,"messages":[]})";
constexpr const char* kNoAnalysis =
    R"({"code":2,"field":null,"message":"there is no analysis","remedy":)"
    R"("npar_analysis_create makes one; where it fails, memory ran out","messages":[]})";
constexpr const char* kNoMemory =
    R"({"code":5,"field":null,"message":"there is not enough memory","remedy":)"
    R"("ask for fewer fields, tests or reports in one run","messages":[]})";

}  // namespace

struct NparAnalysis {
  Analysis analysis;
  std::atomic<bool> isBusy = false;
  std::string failure;
  const char* error = kNoFailure;
};

namespace {

/// Keeps what an exception tells for npar_analysis_error.
uint32_t Keep(NparAnalysis& handle, const std::exception_ptr& exception) noexcept {
  try {
    const npar_host::Failure failure = npar_host::FailureOf(exception);
    handle.failure = npar_host::FailureJson(failure);
    handle.error = handle.failure.c_str();
    return failure.code;
  } catch (...) {
    handle.error = kNoMemory;
    return NPAR_A_MEMORY;
  }
}

/// One call into C++. A second one of the same analysis, from a progress function or another
/// thread, is refused without a word: the error text is the first one's.
template <class Call>
uint32_t Guarded(NparAnalysis* handle, const Call& call) noexcept {
  if (handle == nullptr) return NPAR_A_USAGE;
  if (handle->isBusy.exchange(true)) return NPAR_A_STATE;
  uint32_t code = NPAR_A_OK;
  try {
    call(handle->analysis);
  } catch (...) {
    code = Keep(*handle, std::current_exception());
  }
  handle->isBusy = false;
  return code;
}

const char* Required(const char* text, const char* what) {
  if (text == nullptr) throw UsageError(std::string(what) + " is null; give a text");
  return text;
}

}  // namespace

uint32_t npar_analysis_create(NparAnalysis** analysis) {
  if (analysis == nullptr) return NPAR_A_USAGE;
  NparAnalysis* const made = new (std::nothrow) NparAnalysis;
  if (made == nullptr) return NPAR_A_MEMORY;
  *analysis = made;
  return NPAR_A_OK;
}

void npar_analysis_destroy(NparAnalysis* analysis) { delete analysis; }

uint32_t npar_analysis_set(NparAnalysis* analysis, const char* option, const char* value) {
  return Guarded(analysis, [=](Analysis& own) {
    own.Choose().Set(Required(option, "the option"), Required(value, "the value"));
  });
}

uint32_t npar_analysis_order(NparAnalysis* analysis, const char* field,
                             const char* const* categories, size_t count) {
  return Guarded(analysis, [=](Analysis& own) {
    if (categories == nullptr && count > 0) throw UsageError("the categories are null");
    std::vector<std::string> order;
    for (size_t i = 0; i < count; ++i) order.emplace_back(Required(categories[i], "a category"));
    own.Choose().SetOrder(Required(field, "the field"), std::move(order));
  });
}

uint32_t npar_analysis_read_stream(NparAnalysis* analysis, struct ArrowArrayStream* stream) {
  const uint32_t code = Guarded(analysis, [=](Analysis& own) {
    if (stream == nullptr) throw UsageError("the stream is null");
    own.TakeStream(*stream);
  });
  // A stream that was refused before anybody looked at it.
  if (stream != nullptr && stream->release != nullptr) stream->release(stream);
  return code;
}

uint32_t npar_analysis_add_column(NparAnalysis* analysis, const NparColumn* column) {
  return Guarded(analysis, [=](Analysis& own) {
    if (column == nullptr) throw UsageError("the column is null");
    own.AddColumn(*column);
  });
}

uint32_t npar_analysis_sum_piece(NparAnalysis* analysis, const void** sums, size_t* length) {
  return Guarded(analysis, [=](Analysis& own) {
    if (sums == nullptr || length == nullptr) throw UsageError("the place for the sums is null");
    const std::string& bytes = own.SumPiece();
    *sums = bytes.data();
    *length = bytes.size();
  });
}

uint32_t npar_analysis_begin_pass(NparAnalysis* analysis, const void* pass, size_t length,
                                  size_t piece) {
  return Guarded(analysis, [=](Analysis& own) {
    if (pass == nullptr) throw UsageError("the pass is null");
    own.BeginPass({static_cast<const char*>(pass), length}, piece);
  });
}

uint32_t npar_analysis_next_pass(NparAnalysis* analysis, const void** pass, size_t* length) {
  return Guarded(analysis, [=](Analysis& own) {
    if (pass == nullptr || length == nullptr) throw UsageError("the place for the pass is null");
    const std::string& bytes = own.NextPass();
    *pass = bytes.data();
    *length = bytes.size();
  });
}

uint32_t npar_analysis_add_sums(NparAnalysis* analysis, const void* sums, size_t length) {
  return Guarded(analysis, [=](Analysis& own) {
    if (sums == nullptr) throw UsageError("the sums are null");
    own.AddSums({static_cast<const char*>(sums), length});
  });
}

uint32_t npar_analysis_run(NparAnalysis* analysis, NparProgress progress, void* user) {
  return Guarded(analysis, [=](Analysis& own) {
    own.Run(progress == nullptr ? Analysis::Progress()
                                : [=](double done, double total) { progress(done, total, user); });
  });
}

void npar_analysis_cancel(NparAnalysis* analysis) {
  if (analysis == nullptr) return;
  try {
    analysis->analysis.Cancel();
  } catch (...) {  // a lock that can't be had: the run goes on until its next report
  }
}

uint32_t npar_analysis_result(NparAnalysis* analysis, const char* form, const char** text,
                              size_t* length) {
  return Guarded(analysis, [=](Analysis& own) {
    if (text == nullptr) throw UsageError("the place for the text is null");
    const std::string& result = own.Result(Required(form, "the form"));
    *text = result.c_str();
    if (length != nullptr) *length = result.size();
  });
}

const char* npar_analysis_error(const NparAnalysis* analysis) {
  return analysis == nullptr ? kNoAnalysis : analysis->error;
}

const char* npar_catalogue(size_t* length) {
  try {
    static const std::string catalogue = npar_host::CatalogueJson(nullptr);
    if (length != nullptr) *length = catalogue.size();
    return catalogue.c_str();
  } catch (...) {
    return nullptr;
  }
}

const char* npar_version(void) { return NPAR_VERSION; }
