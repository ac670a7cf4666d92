#include "host/analysis/request_facts.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>

#include "catalogue/catalogue.h"
#include "host/render/sample_order.h"
#include "host/render/wording.h"

namespace npar_host {
namespace {

namespace cochran_q = catalogue::cochran_q;
namespace jonckheere = catalogue::jonckheere_terpstra;

// The test of the request that made the document's test.
const TestRequest* AskedTest(const AnalysisRequest& request, const ResultTest& test) {
  const auto found = std::ranges::find_if(request.tests, [&test](const TestRequest& asked) {
    return asked.Test().element == test.name;
  });
  return found == request.tests.end() ? nullptr : &*found;
}

// The category of the first field in the first record that holds all of the fields.
std::vector<std::string> FirstCategory(const ResultDocument& document, const ResultTest& test,
                                       const PreparedData& records) {
  std::vector<std::size_t> columns;
  for (const std::size_t index : test.ConditionFields(0, document.fields.size())) {
    const auto& fields = records.model.fields;
    const auto found = std::ranges::find(fields, document.fields[index].name, &Field::name);
    if (found == fields.end()) return {};
    columns.push_back(static_cast<std::size_t>(found - fields.begin()));
  }
  if (columns.empty()) return {};
  std::vector<double> row(records.records.Width());
  for (std::size_t next = 0; records.records.Read(next, 1, row.data()) == 1;) {
    if (std::ranges::any_of(columns, [&row](std::size_t i) { return row[i] == kMissingCode; })) {
      continue;
    }
    const auto code = static_cast<std::size_t>(row[columns.front()]);
    return {records.model.fields[columns.front()].categories[code].text};
  }
  return {};
}

std::vector<std::string> SuccessesOf(const ResultDocument& document, const ResultTest& test,
                                     const AnalysisRequest& request, const PreparedData& records) {
  const TestRequest* const asked = AskedTest(request, test);
  std::vector<std::string> given;
  for (const NamedCategory& named :
       asked == nullptr ? std::vector<NamedCategory>() : asked->NamedCategories()) {
    given.push_back(named.category);
  }
  return given.empty() ? FirstCategory(document, test, records) : given;
}

}  // namespace

RequestFacts FindRequestFacts(const AnalysisRequest& request, FieldInference& inference) {
  RequestFacts facts{inference.Choices(request), {}, {}};
  for (const std::string& field : request.NamedFields()) {
    facts.fields.push_back(
        {field, inference.MeasureOf(request, field), inference.MissingOf(field)});
  }
  return facts;
}

std::vector<FieldValues> CollectValues(const PreparedData& prepared) {
  constexpr std::int64_t kMostDrawn = 500;  // more points cover each other
  const RecordView& records = prepared.records;
  const std::size_t width = records.Width();
  if (width == 0 || prepared.counts.weighted > kMostDrawn) return {};
  const std::vector<Field>& fields = prepared.model.fields;
  const auto weight = std::ranges::find(fields, Role::FrequencyWeight, &Field::role);
  std::vector<double> rows(static_cast<std::size_t>(prepared.counts.kept) * width);
  std::size_t next = 0;
  const std::size_t count = records.Read(next, rows.size() / width, rows.data());
  std::vector<FieldValues> collected;
  for (std::size_t index = 0; index < fields.size(); ++index) {
    std::vector<double>& column =
        collected.emplace_back(FieldValues{fields[index].name, {}}).values;
    const double missing = fields[index].IsCategorical() ? kMissingCode : kMissingNumber;
    for (std::size_t record = 0; record < count; ++record) {
      const double* const row = &rows[record * width];
      const double times = weight == fields.end() ? 1.0 : row[weight - fields.begin()];
      column.insert(column.end(), static_cast<std::size_t>(times),
                    row[index] == missing ? NAN : row[index]);
    }
  }
  return collected;
}

void TellRequest(ResultDocument& document, const AnalysisRequest& request,
                 const RequestFacts& facts) {
  for (ResultField& field : document.fields) {
    const auto fact = std::ranges::find(facts.fields, field.name, &TracedField::name);
    field.isNominal = fact != facts.fields.end() && fact->measure == "nominal";
  }
  for (ResultTest& test : document.tests) {
    for (const Choice& choice : facts.choices) {
      if (catalogue::FindTest(choice.test)->element == test.name) {
        test.chosenBecause = choice.because;
      }
    }
    if (test.name == jonckheere::kCard.element) {
      const TestRequest* const asked = AskedTest(request, test);
      test.groupsDescend = asked != nullptr && asked->ValueOf("order") == "descending";
    }
  }
  if (!facts.values.empty()) {
    RecordValues& values = document.values.emplace();
    for (const ResultField& field : document.fields) {
      const auto found = std::ranges::find(facts.values, field.name, &FieldValues::field);
      values.fields.push_back(found == facts.values.end() ? std::vector<double>() : found->values);
    }
  }
  OrderSamples(document);
}

void TellSuccesses(ResultDocument& document, const AnalysisRequest& request,
                   const PreparedData& records) {
  for (ResultTest& test : document.tests) {
    if (test.name == cochran_q::kCard.element && !test.Failed()) {
      test.successes = SuccessesOf(document, test, request, records);
    }
  }
}

bool MayTellSuccesses(std::string_view document) {
  return document.find(cochran_q::kCard.element) != std::string_view::npos;
}

}  // namespace npar_host
