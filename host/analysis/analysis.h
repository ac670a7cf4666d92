#pragma once

#include <npar/analysis.h>

#include <atomic>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/analysis/choices.h"
#include "host/analysis/outcome.h"
#include "host/analysis/request_facts.h"
#include "host/arrow/arrow_table.h"
#include "host/arrow/import.h"
#include "host/loader/analysis_run.h"
#include "host/ranges/range_piece.h"
#include "host/render/result_model.h"

namespace npar_host {

/// An analysis of columns in memory: request, data, a run, its results. What is wrong with request
/// or data is thrown as UsageError or InputError, calls out of order as StateError.
class Analysis {
 public:
  using Progress = std::function<void(double done, double total)>;

  [[nodiscard]] Choices& Choose() { return choices; }
  /// Takes the batches of a stream and releases it, unless the analysis has data already.
  void TakeStream(ArrowArrayStream& stream);
  void AddColumn(const NparColumn& column);

  /// Sums the data, one sorted piece of all, and uses them up; good until the next sums or run.
  [[nodiscard]] const std::string& SumPiece();
  /// The next piece is one of a second pass; its number, from 0.
  void BeginPass(std::string_view pass, std::size_t piece);
  /// What a second pass begins with, and empty where the sums taken so far are enough; good until
  /// the next one or run. Sums of that pass replace them.
  [[nodiscard]] const std::string& NextPass();
  /// Takes the sums of the piece that follows those taken so far.
  void AddSums(std::string_view sums);
  /// Uses the data, or the sums of pieces, up. Throws RefusedError and CancelledError too.
  void Run(const Progress& progress);
  /// Stops the run under way, or the next one. From any thread.
  void Cancel();
  /// The results in a form; good until the next run.
  [[nodiscard]] const std::string& Result(const std::string& form);

 private:
  void HeedCancel() const;
  void ForgetResults();
  void RunRecords(ArrowTable data, AnalysisRequest request, const Progress& progress);
  void RunSummed(const RangePiece& whole, const AnalysisRequest& request);
  /// What the types of columns say where nobody said otherwise.
  static void TakeMeasures(const ArrowCells& cells, AnalysisRequest& request);
  [[nodiscard]] ModelledData Model(ArrowCells cells, AnalysisRequest& request);
  void Execute(AnalysisRun& run, const Progress& progress);
  /// Reads the result document, unless that was done before.
  ResultDocument& Document();
  [[nodiscard]] ResultDocument ReadDocument(Bins bins) const;
  [[nodiscard]] std::string Render(const std::string& form);

  Choices choices;
  ArrowTable table;
  std::optional<RangePiece> pieces;  // summed
  std::string pieceSums;             // of the last piece
  std::string passBytes;             // for the pieces of a second pass
  std::optional<FurtherPass> pass;   // of the next piece
  std::size_t pieceOfPass = 0;

  std::mutex activeMutex;
  AnalysisRun* active = nullptr;  // the run under way, from its preparation on
  std::atomic<bool> isCancelled = false;

  // Of the last run.
  std::optional<std::string> documentText;
  std::vector<RunMessage> messages;
  std::vector<std::string> notes;
  Choices asked;  // with what was inferred
  RequestFacts facts;
  std::optional<ResultDocument> document;  // of a form that needed it
  std::map<std::string, std::string> forms;
};

}  // namespace npar_host
