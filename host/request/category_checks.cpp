#include "host/request/category_checks.h"

#include <algorithm>

#include "host/data/input_error.h"
#include "host/data/join_words.h"
#include "host/data/near_miss.h"
#include "host/data/number.h"
#include "host/request/word_list.h"

namespace npar_host {
namespace {

constexpr std::size_t kMostListed = 20;  // categories in a message

bool IsSame(const std::string& a, const std::string& b) {
  double first = 0.0;
  double second = 0.0;
  return a == b || (ParseNumber(a, first) && ParseNumber(b, second) && first == second);
}

bool IsIn(const std::vector<std::string>& values, const std::string& value) {
  return std::ranges::any_of(values, [&](const auto& each) { return IsSame(each, value); });
}

std::string Listed(const std::vector<std::string>& values, const char* joint) {
  std::vector<std::string> shown;
  for (std::size_t i = 0; i < values.size() && i < kMostListed; ++i) {
    shown.push_back(Quoted(values[i]));
  }
  if (values.size() > kMostListed) shown.emplace_back("others");
  return JoinWords(shown, joint);
}

class CategoryCheck {
 public:
  CategoryCheck(const AnalysisRequest& request, const ContentOf& contentOf)
      : request(request), contentOf(contentOf) {}

  std::vector<std::string> Run() {
    for (const FieldMeasure& measure : request.measures) CheckOrder(measure);
    for (const TestRequest& test : request.tests) {
      CheckTest(test);
      if (test.Test().name == "jonckheere-terpstra") TellOrder(test);
    }
    return std::move(notes);
  }

 private:
  void CheckOrder(const FieldMeasure& measure) {
    if (measure.categories.empty()) return;
    const std::vector<std::string>& values = contentOf(measure.field).values;
    std::vector<std::string> unlisted;
    for (const std::string& value : values) {
      if (!IsIn(measure.categories, value)) unlisted.push_back(value);
    }
    const std::string option = "--" + measure.measure + " " + measure.field;
    for (const std::string& category : measure.categories) {
      if (IsIn(values, category)) continue;
      const std::string near = NearMiss(category, unlisted);
      if (!near.empty() || !unlisted.empty()) {
        std::string told = option + " names " + Quoted(category);
        told.append(", which the field does not hold").append(near);
        throw UsageError(told + "; it holds " + Listed(values, " and "), measure.field);
      }
      notes.push_back(measure.field + ": no record is " + Quoted(category));
    }
    if (!unlisted.empty()) {
      notes.push_back(option + " leaves out " + Listed(unlisted, " and ") + ", which come" +
                      (unlisted.size() == 1 ? "s" : "") + " last");
    }
  }

  /// The fields whose categories the test's options name.
  [[nodiscard]] std::vector<std::string> CategoricalFields(catalogue::Family family) const {
    if (family == catalogue::Family::Independent) return {request.groupField};
    std::vector<std::string> fields;
    for (const std::string& field : request.FieldsOf(family)) {
      if (contentOf(field).isCategorical) fields.push_back(field);
    }
    return fields;
  }

  void CheckTest(const TestRequest& test) {
    const std::vector<std::string> fields = CategoricalFields(test.Test().family);
    const std::vector<NamedCategory> named = test.NamedCategories();
    if (fields.empty() || named.empty()) return;
    for (const auto& [option, category] : named) CheckCategory(test, option, category, fields);
    const std::string& option = named.front().option;
    if (option == "success") return;  // says what it does with all others
    for (const std::string& field : fields) {
      std::vector<std::string> others;
      for (const std::string& value : contentOf(field).values) {
        const bool isNamed = std::ranges::any_of(
            named, [&](const NamedCategory& each) { return IsSame(each.category, value); });
        if (!isNamed) others.push_back(value);
      }
      if (others.empty()) continue;
      notes.push_back("test " + test.Test().name + " leaves out the records of " + field +
                      " that are " + Listed(others, " or ") +
                      (option == "expected" ? ": expected names no proportion for them"
                                            : ": they are in neither group"));
    }
  }

  void CheckCategory(const TestRequest& test, const std::string& option,
                     const std::string& category, const std::vector<std::string>& fields) {
    std::vector<std::string> all;
    std::vector<std::string> without;
    for (const std::string& field : fields) {
      const std::vector<std::string>& values = contentOf(field).values;
      if (!IsIn(values, category)) without.push_back(field);
      for (const std::string& value : values) {
        if (!IsIn(all, value)) all.push_back(value);
      }
    }
    if (without.empty()) return;
    const std::string what = "option " + option + " of test " + test.Test().name + " names " +
                             Quoted(category) + ", which " + JoinWords(without) + " does not hold";
    if (without.size() < fields.size()) {
      notes.push_back(what);
      return;
    }
    throw UsageError(what + NearMiss(category, all) + "; the categories are " +
                     Listed(all, " and "));
  }

  /// The trend over groups is one over an order that somebody must mean.
  void TellOrder(const TestRequest& test) {
    const FieldMeasure* const measure = request.MeasureOf(request.groupField);
    if (measure != nullptr && !measure->categories.empty()) return;
    const FieldContent& content = contentOf(request.groupField);
    std::vector<std::string> groups = content.values;
    if (groups.size() < 2 || groups.size() > kMostListed) return;
    const std::string given = request.groupField + "=" + JoinAll(groups, "<");
    if (test.ValueOf("order") == "descending") std::ranges::reverse(groups);
    notes.push_back("test " + test.Test().name + " takes the groups in the order " +
                    JoinAll(groups, ", ") +
                    (content.isText ? ", that of the alphabet: nobody gave another" : "") +
                    "; --ordinal '" + given + "', in the order that you mean, gives it");
  }

  static std::string JoinAll(const std::vector<std::string>& words, const char* joint) {
    return JoinWords(words, joint, joint);
  }

  const AnalysisRequest& request;
  const ContentOf& contentOf;
  std::vector<std::string> notes;
};

}  // namespace

std::string MeasureOf(const AnalysisRequest& request, const ContentOf& contentOf,
                      const std::string& field) {
  const FieldMeasure* const given = request.MeasureOf(field);
  if (given != nullptr) return given->measure;
  return contentOf(field).isCategorical ? "nominal" : "continuous";
}

std::vector<std::string> CheckCategories(const AnalysisRequest& request,
                                         const ContentOf& contentOf) {
  return CategoryCheck(request, contentOf).Run();
}

}  // namespace npar_host
