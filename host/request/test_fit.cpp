#include "host/request/test_fit.h"

#include <algorithm>
#include <array>
#include <set>

#include "host/data/join_words.h"
#include "host/request/field_list.h"

namespace npar_host {
namespace {

using catalogue::Family;
using catalogue::Measures;

struct Level {
  Measures measure;
  const char* word;
};
constexpr std::array<Level, 3> kLevels = {{{catalogue::kContinuous, "continuous"},
                                           {catalogue::kOrdinal, "ordinal"},
                                           {catalogue::kNominal, "nominal"}}};
constexpr std::size_t kMostShown = 8;  // categories in a command

class Misfits {
 public:
  Misfits(const AnalysisRequest& request, const ContentOf& contentOf)
      : request(request), contentOf(contentOf) {}

  std::vector<std::string> Run() {
    for (const Family family : {Family::OneSample, Family::Related, Family::Independent}) {
      if (request.FieldsOf(family).empty()) continue;
      if (request.HasTests(family)) {
        CheckAsked(family);
      } else {
        CheckAutomatic(family);
      }
    }
    return std::move(notes);
  }

 private:
  [[nodiscard]] const Level& LevelOf(const std::string& field) const {
    const std::string word = MeasureOf(request, contentOf, field);
    return *std::ranges::find(kLevels, word, &Level::word);
  }
  [[nodiscard]] std::string Told(const std::string& field) const {
    return field + " (" + LevelOf(field).word + ")";
  }
  [[nodiscard]] std::string ToldAll(const std::vector<std::string>& fields) const {
    std::vector<std::string> told;
    told.reserve(fields.size());
    for (const std::string& field : fields) told.push_back(Told(field));
    return JoinWords(told, " and ");
  }
  [[nodiscard]] std::vector<std::string> OfLevel(Family family, const Level& level) const {
    std::vector<std::string> fields;
    for (const std::string& field : request.FieldsOf(family)) {
      if (&LevelOf(field) == &level) fields.push_back(field);
    }
    return fields;
  }

  /// What would make a test that takes these measures take the field.
  [[nodiscard]] std::string Remedy(const std::string& field, unsigned measures) const {
    const Level& level = LevelOf(field);
    if ((measures & level.measure) != 0) return {};
    const FieldContent& content = contentOf(field);
    if ((measures & catalogue::kNominal) != 0)
      return "; --nominal " + FieldArgument(field) + " makes it one";
    const FieldMeasure* const given = request.MeasureOf(field);
    const bool isOrdered = given != nullptr && !given->categories.empty();
    std::vector<std::string> categories = isOrdered ? given->categories : content.values;
    if (categories.size() > kMostShown) categories.resize(kMostShown);
    const std::string order = categories.empty() ? "" : "=" + JoinWords(categories, "<", "<");
    if ((measures & catalogue::kContinuous) == 0) {
      return "; --ordinal '" + field + order + "', in the order that you mean, makes it one";
    }
    if (!content.isText) return "; --continuous " + FieldArgument(field) + " makes it one";
    return "; the categories of " + field + " get numbers by --scores '" + field + order + "'";
  }
  [[nodiscard]] std::string Remedies(Family family, unsigned measures) const {
    std::string remedies;
    for (const std::string& field : request.FieldsOf(family)) remedies += Remedy(field, measures);
    return remedies;
  }
  /// What number of fields a test of related ones needs, where their levels fit.
  [[nodiscard]] std::string CountRemedy(const catalogue::Card& test) const {
    const std::size_t count = request.FieldsOf(test.family).size();
    if (test.family != Family::Related) return {};
    if (count > test.fields.most) {
      return "; name " + std::to_string(test.fields.most) + " of them in a call of its own";
    }
    return count < test.fields.fewest ? "; name another field that was measured likewise" : "";
  }

  /// The fields that the test takes.
  [[nodiscard]] std::vector<std::string> TakenBy(const catalogue::Card& test) const {
    std::vector<std::string> taken;
    for (const Level& level : kLevels) {
      if ((test.fields.measures & level.measure) == 0) continue;
      const std::vector<std::string> fields = OfLevel(test.family, level);
      const bool isTogether = test.family == Family::Related;
      const bool fits =
          !isTogether || (fields.size() >= test.fields.fewest && fields.size() <= test.fields.most);
      if (fits) taken.insert(taken.end(), fields.begin(), fields.end());
    }
    return taken;
  }

  void CheckAsked(Family family) {
    std::set<std::string> taken;
    std::vector<std::string> wanted;
    unsigned measures = 0;
    for (const TestRequest& asked : request.tests) {
      const catalogue::Card& test = asked.Test();
      if (test.family != family) continue;
      const std::vector<std::string> fields = TakenBy(test);
      taken.insert(fields.begin(), fields.end());
      const std::string takes = test.name + " takes " + std::string(test.fields.description);
      wanted.push_back(takes);
      measures |= test.fields.measures;
      if (!fields.empty()) continue;
      const std::string remedies = Remedies(family, test.fields.measures);
      notes.push_back("test " + test.name + " cannot act: it takes " +
                      std::string(test.fields.description) + ", and --" + FamilyName(family) +
                      " names " + ToldAll(request.FieldsOf(family)) +
                      (remedies.empty() ? CountRemedy(test) : remedies));
    }
    if (taken.empty()) return;  // each test has been told
    for (const std::string& field : request.FieldsOf(family)) {
      if (taken.contains(field)) continue;
      notes.push_back(Told(field) + " is in no " + FamilyName(family) +
                      " test: " + JoinWords(wanted, "; ", "; ") + Remedy(field, measures));
    }
  }

  void CheckAutomatic(Family family) {
    if (family == Family::Related) return CheckRelated();
    const bool isIndependent = family == Family::Independent;
    for (const std::string& field : request.FieldsOf(family)) {
      const bool isCategorical = &LevelOf(field) != kLevels.data();
      if (isIndependent && isCategorical) {
        notes.push_back(Told(field) +
                        " cannot be compared between groups: tests of --independent "
                        "fields take continuous ones" +
                        Remedy(field, catalogue::kContinuous));
      } else if (!isIndependent && isCategorical && contentOf(field).values.size() < 2) {
        notes.push_back(Told(field) + " is in no test: it holds one category alone");
      }
    }
    if (isIndependent && contentOf(request.groupField).values.size() < 2) {
      notes.push_back("--by " + request.groupField +
                      " divides nothing: the field holds fewer than two different values");
    }
  }

  void CheckRelated() {
    for (const Level& level : kLevels) {
      const std::vector<std::string> fields = OfLevel(Family::Related, level);
      if (fields.empty()) continue;
      const bool isCategorical = level.measure != catalogue::kContinuous;
      if (fields.size() == 1) {
        notes.push_back(
            Told(fields.front()) + " is in no test: it is the only " + level.word +
            " one of the --related fields" +
            Remedy(fields.front(), isCategorical ? catalogue::kContinuous : catalogue::kNominal));
      } else if (isCategorical && !HoldTwoCategories(fields, contentOf)) {
        notes.push_back(ToldAll(fields) +
                        " are in no test: of related categories only two are compared without "
                        "being asked for; --test marginal-homogeneity takes pairs of fields with "
                        "more, --scores makes numbers of ordered ones");
      }
    }
  }

  const AnalysisRequest& request;
  const ContentOf& contentOf;
  std::vector<std::string> notes;
};

}  // namespace

std::vector<std::string> ExplainMisfits(const AnalysisRequest& request,
                                        const ContentOf& contentOf) {
  return Misfits(request, contentOf).Run();
}

}  // namespace npar_host
