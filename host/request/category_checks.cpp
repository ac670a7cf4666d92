#include "host/request/category_checks.h"

#include <algorithm>
#include <set>

#include "host/data/input_error.h"
#include "host/data/join_words.h"
#include "host/data/near_miss.h"
#include "host/data/number.h"
#include "host/request/word_list.h"

namespace npar_host {
namespace {

constexpr std::size_t kMostListed = 20;  // categories in a message

/// The category as the field spells it: a number by its value, a text as it stands.
std::string SpeltIn(const FieldContent& content, const std::string& category) {
  double number = 0.0;
  return !content.isText && ParseNumber(category, number) ? NumberText(number) : category;
}

/// How the categories that a request names meet those of a field.
struct Meeting {
  std::string field;
  std::set<std::string> held;        // of the named ones, as the field spells them
  std::vector<std::string> unnamed;  // of the field's
};

Meeting Meet(const std::string& field, const FieldContent& content,
             const std::vector<std::string>& named) {
  std::set<std::string> wanted;
  for (const std::string& category : named) wanted.insert(SpeltIn(content, category));
  Meeting meeting{field, {}, {}};
  for (const std::string& value : content.values) {
    if (wanted.contains(value)) {
      meeting.held.insert(value);
    } else {
      meeting.unnamed.push_back(value);
    }
  }
  return meeting;
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
    const FieldContent& content = contentOf(measure.field);
    const auto [field, held, unlisted] = Meet(measure.field, content, measure.categories);
    const std::string option = "--" + measure.measure + " " + field;
    for (const std::string& category : measure.categories) {
      if (held.contains(SpeltIn(content, category))) continue;
      if (!unlisted.empty()) {
        std::string told = option + " names " + Quoted(category);
        told.append(", which the field does not hold").append(NearMiss(category, unlisted));
        throw UsageError(told + "; it holds " + Listed(content.values, " and "), field);
      }
      notes.push_back(field + ": no record is " + Quoted(category));
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
    std::vector<std::string> categories;
    categories.reserve(named.size());
    for (const auto& [option, category] : named) categories.push_back(category);
    std::vector<Meeting> meetings;
    meetings.reserve(fields.size());
    for (const std::string& field : fields) {
      meetings.push_back(Meet(field, contentOf(field), categories));
    }
    for (const auto& [option, category] : named) CheckCategory(test, option, category, meetings);
    // A single list of categories divides the records into them and all others.
    const bool isExpected = test.HasOption("expected");
    if (!isExpected && !test.HasOption("group2")) return;
    for (const Meeting& meeting : meetings) {
      if (meeting.unnamed.empty()) continue;
      notes.push_back(
          "test " + test.Test().name + " leaves out the records of " + meeting.field +
          " that are " + Listed(meeting.unnamed, " or ") +
          (isExpected ? ": expected names no proportion for them" : ": they are in neither group"));
    }
  }

  void CheckCategory(const TestRequest& test, const std::string& option,
                     const std::string& category, const std::vector<Meeting>& meetings) {
    std::vector<std::string> without;
    for (const Meeting& meeting : meetings) {
      const std::string spelt = SpeltIn(contentOf(meeting.field), category);
      if (!meeting.held.contains(spelt)) without.push_back(meeting.field);
    }
    if (without.empty()) return;
    const std::string what = "option " + option + " of test " + test.Test().name + " names " +
                             Quoted(category) + ", which " + JoinWords(without) + " does not hold";
    if (without.size() < meetings.size()) {
      notes.push_back(what);
      return;
    }
    std::vector<std::string> all;
    std::set<std::string> known;
    for (const std::string& field : without) {
      for (const std::string& value : contentOf(field).values) {
        if (known.insert(value).second) all.push_back(value);
      }
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

bool HoldTwoCategories(const std::vector<std::string>& fields, const ContentOf& contentOf) {
  constexpr std::size_t kTwo = 2;
  std::set<std::string> categories;
  for (const std::string& field : fields) {
    const std::vector<std::string>& values = contentOf(field).values;
    if (values.size() > kTwo) return false;
    categories.insert(values.begin(), values.end());
  }
  return categories.size() <= kTwo;
}

std::vector<std::string> CheckCategories(const AnalysisRequest& request,
                                         const ContentOf& contentOf) {
  return CategoryCheck(request, contentOf).Run();
}

}  // namespace npar_host
