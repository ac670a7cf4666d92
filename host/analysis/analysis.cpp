#include "host/analysis/analysis.h"

#include <algorithm>
#include <utility>

#include "host/analysis/failure.h"
#include "host/analysis/linked_component.h"
#include "host/analysis/request_facts.h"
#include "host/data/input_error.h"
#include "host/data/join_words.h"
#include "host/os/processors.h"
#include "host/ranges/range_document.h"
#include "host/render/json.h"
#include "host/render/json_writer.h"
#include "host/render/renderers.h"
#include "host/render/sample_order.h"
#include "host/request/field_inference.h"
#include "host/request/word_list.h"

namespace npar_host {
namespace {

constexpr const char* kDocument = "document";
constexpr const char* kTests = "tests";
constexpr const char* kFigures = "figures";
constexpr const char* kNotes = "notes";
constexpr const char* kMessages = "messages";

FieldSpec& SpecOf(std::vector<FieldSpec>& specs, const std::string& name) {
  const auto found = std::ranges::find(specs, name, &FieldSpec::name);
  if (found != specs.end()) return *found;
  specs.emplace_back().name = name;
  return specs.back();
}

/// For the field that forms groups those that a record has: a test of two groups wants no third.
std::vector<std::string> Categories(const ArrowField& field, const AnalysisRequest& request) {
  if (field.name != request.groupField) return field.order.entries;
  std::vector<std::string> used;
  for (std::size_t i = 0; i < field.order.entries.size(); ++i) {
    if (field.order.isUsed[i]) used.push_back(field.order.entries[i]);
  }
  return used;
}

}  // namespace

void Analysis::TakeStream(ArrowArrayStream& stream) {
  if (!table.IsEmpty()) throw StateError("the analysis has data already; run it first");
  if (pieces) throw StateError("the analysis has sums of pieces; run it first");
  ArrowTable taken;
  // An earlier cancel is the next run's.
  const bool isMeantForRun = isCancelled;
  try {
    taken.TakeStream(stream, [this, isMeantForRun] {
      if (!isMeantForRun) HeedCancel();
    });
  } catch (const CancelledError&) {
    isCancelled = false;
    throw;
  }
  table = std::move(taken);
}

void Analysis::AddColumn(const NparColumn& column) {
  if (table.HasStream()) throw StateError("the analysis has a stream of records; run it first");
  if (pieces) throw StateError("the analysis has sums of pieces; run it first");
  table.AddColumn(column);
}

void Analysis::HeedCancel() const {
  if (isCancelled) throw CancelledError();
}

void Analysis::Cancel() {
  isCancelled = true;
  const std::lock_guard lock(activeMutex);
  if (active != nullptr) active->Cancel();
}

void Analysis::TakeMeasures(const ArrowCells& cells, AnalysisRequest& request) {
  for (std::size_t i = 0; i < cells.fields.size(); ++i) {
    const ArrowField& field = cells.fields[i];
    const bool isRole = field.name == request.weightField || field.name == request.caseIdField;
    if (!field.isDictionary || isRole) continue;
    const auto given = std::ranges::find(request.measures, field.name, &FieldMeasure::field);
    if (given == request.measures.end()) {
      request.measures.push_back(
          {field.name, field.isOrdered ? "ordinal" : "nominal",
           field.isOrdered ? Categories(field, request) : std::vector<std::string>()});
    } else if (field.isOrdered && given->measure == "ordinal" && given->categories.empty()) {
      given->categories = Categories(field, request);
    }
  }
}

ModelledData Analysis::Model(ArrowCells cells, AnalysisRequest& request) {
  TakeMeasures(cells, request);
  {
    const ArrowSource source;
    FieldInference inference(source, cells.data);
    inference.Infer(request);
    HeedCancel();
    notes = inference.Notes(request);
    facts = FindRequestFacts(request, inference);
  }
  std::vector<FieldSpec> specs = ParseModel(DataModelDocument(request), "the data model");
  for (const ArrowField& field : cells.fields) {
    if (field.storage != Storage::Infer) SpecOf(specs, field.name).storage = field.storage;
  }
  HeedCancel();
  return FindModel(std::move(cells.data), specs);
}

void Analysis::ForgetResults() {
  documentText.reset();
  document.reset();
  messages.clear();
  notes.clear();
  facts = {};
  forms.clear();
}

const std::string& Analysis::SumPiece() {
  if (table.IsEmpty()) {
    throw StateError("there is no piece; give the analysis a stream or columns before");
  }
  ArrowTable data = std::exchange(table, {});
  AnalysisRequest request = choices.request;
  CheckRequest(request);
  CheckFields(request, data.Names());
  const RangePlan plan = PlanRanges(request);
  // A piece may lack categories that the whole has.
  std::erase_if(request.measures, [&plan](const auto& each) { return each.field == plan.group; });
  for (const std::string& field : plan.fields) {
    if (request.MeasureOf(field) == nullptr) request.measures.push_back({field, "continuous", {}});
  }
  ModelledData modelled =
      Model(ImportColumns(data, request.NamedFields(), [this] { HeedCancel(); }), request);
  ForgetResults();
  const RangeRecords records(plan, request, std::move(modelled));
  const std::optional<FurtherPass> further = std::exchange(pass, std::nullopt);
  pieceSums = further ? RangePiece(plan, records, *further, pieceOfPass).Write()
                      : RangePiece(plan, records).Write();
  return pieceSums;
}

void Analysis::BeginPass(std::string_view bytes, std::size_t piece) {
  pass = FurtherPass(bytes);
  pieceOfPass = piece;
}

const std::string& Analysis::NextPass() {
  if (!pieces) throw StateError("the analysis has no sums; add those of the first pass");
  passBytes.clear();
  const RangePlan plan = PlanRanges(choices.request);
  pieces->RequirePlan(plan);
  if (!plan.needsFurtherPass || pieces->AreOfFurtherPass()) return passBytes;
  passBytes = pieces->NextPass(plan).Write();
  pieces.reset();
  return passBytes;
}

void Analysis::AddSums(std::string_view sums) {
  if (!table.IsEmpty()) throw StateError("the analysis has data; run it first");
  RangePiece next(sums);
  if (!pieces) {
    pieces = std::move(next);
  } else {
    pieces->Append(next);
  }
}

void Analysis::Run(const Progress& progress) {
  ForgetResults();
  if (table.IsEmpty() && !pieces) {
    throw StateError("the analysis has no data; give it a stream or columns before a run");
  }
  ArrowTable data = std::exchange(table, {});
  const std::optional<RangePiece> whole = std::exchange(pieces, std::nullopt);
  struct Forgetting {
    std::atomic<bool>& flag;
    ~Forgetting() { flag = false; }
  } const forgetting{isCancelled};
  HeedCancel();
  AnalysisRequest request = choices.request;
  CheckRequest(request);
  if (whole) {
    RunSummed(*whole, request);
  } else {
    RunRecords(std::move(data), std::move(request), progress);
  }
}

void Analysis::RunSummed(const RangePiece& whole, const AnalysisRequest& request) {
  const RangePlan plan = PlanRanges(request);
  whole.RequirePlan(plan);
  if (plan.needsFurtherPass) {
    if (!whole.AreOfFurtherPass()) {
      throw StateError("the test takes a second pass; begin it with npar_analysis_next_pass");
    }
    whole.RequireAllFits(plan);
  }
  document = DocumentOf(whole, request);
  AdjustOverTests(*document, choices.adjustment);
  AdjustPairs(*document, choices.pairAdjustment);
  OrderSamples(*document);
  notes.push_back("the figures were made " + document->tests.front().made +
                  "; medians and distributions are not among them");
}

void Analysis::RunRecords(ArrowTable data, AnalysisRequest request, const Progress& progress) {
  CheckFields(request, data.Names());
  ModelledData modelled =
      Model(ImportColumns(data, request.NamedFields(), [this] { HeedCancel(); }), request);
  AnalysisRun run(LinkedComponent(), ParameterDocument(request), std::move(modelled));
  run.AllowThreads(choices.threads > 0 ? choices.threads
                                       : static_cast<std::uint32_t>(MachineThreads()));
  run.Prepare();
  Execute(run, progress);
  facts.values = CollectValues(run.Records());
  asked = choices;
  asked.request = std::move(request);
  // What records tell has to be asked while they are there.
  if (!asked.request.caseIdField.empty()) {
    NameCases(Document(), [&](double number) { return std::string(run.CaseText(number)); });
  }
  if (MayTellSuccesses(*documentText)) TellSuccesses(Document(), asked.request, run.Records());
}

ResultDocument& Analysis::Document() {
  return document ? *document : document.emplace(ReadDocument(Bins::Read));
}

ResultDocument Analysis::ReadDocument(Bins bins) const {
  ResultDocument read = ReadResultDocument(*documentText, "the result document", bins);
  AdjustOverTests(read, asked.adjustment);
  AdjustPairs(read, asked.pairAdjustment);
  TellRequest(read, asked.request, facts);
  return read;
}

void Analysis::Execute(AnalysisRun& run, const Progress& progress) {
  run.ListenToProgress({[&](double done, double total) {
                          if (progress) progress(done, total);
                          // One that came before the component had begun is not lost.
                          if (isCancelled) run.Cancel();
                        },
                        {}});
  const auto activate = [this](AnalysisRun* now) {
    const std::lock_guard lock(activeMutex);
    active = now;
  };
  HeedCancel();
  activate(&run);
  RunResult result;
  try {
    result = run.Execute();
  } catch (...) {
    activate(nullptr);
    throw;
  }
  activate(nullptr);
  if (!result.Succeeded()) HeedCancel();
  if (!result.Succeeded()) throw RefusedError(std::move(result.messages));
  messages = std::move(result.messages);
  documentText = std::move(result.document);
}

std::string Analysis::Render(const std::string& form) {
  if (form == kNotes) return Json(notes).dump();
  if (form == kMessages) return MessagesJson(messages);
  if (form == kTests) {
    std::string text;
    RenderTestsJson(Document(), [&text](std::string_view piece) { text += piece; });
    return text;
  }
  if (form == kFigures) {
    std::string text;
    const auto append = [&text](std::string_view piece) { text += piece; };
    if (document) {
      RenderFiguresJson(*document, append);
    } else {
      RenderFiguresJson(ReadDocument(Bins::LeftOut), append);
    }
    return text;
  }
  const Renderer* const renderer = FindRenderer(form);
  if (renderer != nullptr) return Rendered(*renderer, Document(), choices.style);
  std::vector<std::string> names = {kDocument};
  for (const Renderer& each : AllRenderers()) names.emplace_back(each.name);
  names.insert(names.end(), {kTests, kFigures, kNotes, kMessages});
  throw UsageError("there is no result as " + Quoted(form) + "; there is " +
                   JoinWords(names, " and "));
}

const std::string& Analysis::Result(const std::string& form) {
  if (!document && !documentText) {
    throw StateError("there is no result; a run has to succeed first");
  }
  if (form == kDocument) {
    if (!documentText) throw UsageError("sums of pieces make no result document; take the JSON");
    return *documentText;
  }
  const auto known = forms.find(form);
  if (known != forms.end()) return known->second;
  std::string text = Render(form);
  return forms[form] = std::move(text);
}

}  // namespace npar_host
