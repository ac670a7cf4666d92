#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <type_traits>

#include "catalogue/values.h"

/// What is known of a test, told once: its names, what it takes, what it may say, how it is read.
/// Everything here is constant and takes the standard library alone, so that the component reads
/// its keys and codes from it and a host its titles and sentences.
namespace catalogue {

// Messages.

enum class Kind { Error, Warning, Help };

/// What the positional parameters of a message are. Names are shown in quotes.
enum class Meaning {
  Plain,  ///< numbers, or texts that are shown as they are
  Name,   ///< a name as the user wrote it
  Field,  ///< the index of a field of the data, in decimal; or the name of one that is not there
};

/// What is wrong, continuing "error 220010: ", and a sentence on what to do about it. Placeholders
/// in `text`: "%0" to "%9" for one positional parameter, "%*" for all of them, "%group" for the
/// named one; a part in brackets is left out unless each of its placeholders has a parameter.
struct Sentence {
  Text text;
  Text remedy;
};

/// A message code: a number for who reports it, words for who reads it.
struct Code {
  constexpr Code(std::int32_t number, Kind kind, Text text, Text remedy,
                 Meaning parameters = Meaning::Plain)
      : number(number), kind(kind), text(text), remedy(remedy), parameters(parameters) {}
  constexpr Code(std::int32_t number, Kind kind, const Sentence& sentence,
                 Meaning parameters = Meaning::Plain)
      : Code(number, kind, sentence.text, sentence.remedy, parameters) {}
  constexpr operator std::int32_t() const noexcept { return number; }

  std::int32_t number;
  Kind kind;
  Text text;
  Text remedy;
  Meaning parameters;
};

// Keys of the parameter document.

enum class Type {
  Flag,        ///< "true" or "false"
  Number,      ///< in the C locale
  Count,       ///< a whole number from 0
  Word,        ///< one of the words that `values` lists
  Field,       ///< the name of a field
  Fields,      ///< a list of names of fields
  Categories,  ///< a list of category values
  Expected,    ///< a list of structures with "categoryValue" and "expectedValue"
  Value,       ///< the value of a category
};

/// The numbers that a key takes.
struct Range {
  double low;
  double high;
  bool holdsEnds;
};
inline constexpr double kInfinity = std::numeric_limits<double>::infinity();
inline constexpr Range kAnyNumber{-kInfinity, kInfinity, false};
inline constexpr Range kAboveZero{0.0, kInfinity, false};
inline constexpr Range kFromZero{0.0, kInfinity, true};
inline constexpr Range kProbability{0.0, 1.0, false};
inline constexpr Range kPercentage{0.0, 100.0, false};

/// What holds where a key is absent: a value, or a description of it.
class Default {
 public:
  constexpr Default(double value) : number(value), text(kNone) {}
  constexpr Default(bool value) : flag(value), text(value ? "true" : "false") {}
  constexpr Default(const char* text) : text(text) {}
  constexpr Default(None) : text("none") {}

  double number = 0.0;  // where `text` is empty
  bool flag = false;
  Text text;
};

struct Setting {
  Text key;
  Required<Type> type;
  Required<Range> range;  // of numbers
  Text values;            // of words, divided by "|"
  Default byDefault;
  Text meaning;
  Text example;  // a value; several of a list divided by "|"
};

/// A setting that a test's unit reads as a value of this type; `fallback` where it is absent.
template <typename Value>
struct Key : Setting {
  constexpr Key(const Setting& setting) : Setting(setting), fallback(FallbackOf(setting)) {}
  Value fallback;

 private:
  static constexpr Value FallbackOf(const Setting& setting) {
    if constexpr (std::is_same_v<Value, bool>) {
      return setting.byDefault.flag;
    } else if constexpr (std::is_same_v<Value, double>) {
      return setting.byDefault.number;
    } else {
      return setting.byDefault.text;
    }
  }
};
using FlagKey = Key<bool>;
using NumberKey = Key<double>;
using WordKey = Key<std::string_view>;

[[nodiscard]] constexpr FlagKey Flag(Text key, Text meaning) {
  return Setting{.key = key,
                 .type = Type::Flag,
                 .range = kAnyNumber,
                 .values = kNone,
                 .byDefault = false,
                 .meaning = meaning,
                 .example = "true"};
}
[[nodiscard]] constexpr NumberKey Number(Text key, Range range, Default byDefault, Text meaning,
                                         Text example) {
  return Setting{.key = key,
                 .type = Type::Number,
                 .range = range,
                 .values = kNone,
                 .byDefault = byDefault,
                 .meaning = meaning,
                 .example = example};
}
[[nodiscard]] constexpr WordKey Word(Text key, Text values, Default byDefault, Text meaning,
                                     Text example) {
  return Setting{.key = key,
                 .type = Type::Word,
                 .range = kAnyNumber,
                 .values = values,
                 .byDefault = byDefault,
                 .meaning = meaning,
                 .example = example};
}
/// Any other kind, which has neither range nor words.
[[nodiscard]] constexpr Setting Other(Text key, Type type, Default byDefault, Text meaning,
                                      Text example) {
  return {.key = key,
          .type = type,
          .range = kAnyNumber,
          .values = kNone,
          .byDefault = byDefault,
          .meaning = meaning,
          .example = example};
}

/// A key with the value that it gets; kNone writes nothing.
struct Entry {
  constexpr Entry(const Setting& setting, Text value) : setting(&setting), value(value) {}
  constexpr Entry(None) : setting(nullptr), value(kNone) {}
  const Setting* setting;
  Text value;
};

/// The settings that a test's entry takes over from the parameter document, where they stand there.
using Settings = List<const Setting*>;

// What a person may ask for.

/// How the text of an option is read.
enum class OptionKind {
  Number,        ///< a number in the C locale
  Count,         ///< a whole number from 0
  Categories,    ///< category values joined by "|"
  Expected,      ///< category=number pairs joined by "|"
  Word,          ///< one of the option's words
  Words,         ///< some of the option's words joined by "|"
  NumberOrWord,  ///< a word of the option, or else a number
};

/// A word that a person gives, and the entry that it stands for.
struct OptionWord {
  Text word;
  Entry entry;
};

/// One option of a test: what a person gives with the test's name, and what the parameter document
/// says for it.
struct Option {
  Text name;
  Required<OptionKind> kind;
  Entry value;       // the setting that holds what is given; kNone where words alone make entries
  Entry whenGiven;   // stands beside the value
  Entry whenAbsent;  // stands alone where the option is not given
  List<OptionWord> words;
  Text syntax;     // of the value, as help shows it
  Text byDefault;  // what happens without the option
  Text help;
};
/// The value of an option is what was given for it.
[[nodiscard]] constexpr Entry Given(const Setting& setting) { return {setting, kNone}; }

[[nodiscard]] constexpr Option NumberOption(Text name, const Setting& setting, Entry whenGiven,
                                            Entry whenAbsent, Text byDefault, Text help) {
  return {name,  OptionKind::Number, Given(setting), whenGiven, whenAbsent,
          kNone, "NUMBER",           byDefault,      help};
}
[[nodiscard]] constexpr Option CategoriesOption(Text name, const Setting& setting, Entry whenGiven,
                                                Entry whenAbsent, Text syntax, Text byDefault,
                                                Text help) {
  return {
      name, OptionKind::Categories, Given(setting), whenGiven, whenAbsent, kNone, syntax, byDefault,
      help};
}
[[nodiscard]] constexpr Option WordOption(Text name, Entry whenAbsent, List<OptionWord> words,
                                          Text syntax, Text byDefault, Text help) {
  return {name, OptionKind::Word, kNone, kNone, whenAbsent, words, syntax, byDefault, help};
}

// Tests.

enum class Family { OneSample, Related, Independent };

enum class Purpose {
  HypothesisTest,
  Estimate,  ///< without a decision
};

/// Measurement levels, to be joined by "|".
enum Measures : unsigned {
  kContinuous = 1,
  kOrdinal = 2,
  kNominal = 4,
  kCategorical = kOrdinal | kNominal,
  kAllMeasures = kContinuous | kCategorical
};

inline constexpr std::size_t kAnyCount = std::numeric_limits<std::size_t>::max();

enum class Groups { None, Two, Several };

/// The fields that a test takes together.
struct Fields {
  Required<unsigned> measures;
  Required<std::size_t> fewest;
  Required<std::size_t> most;
  Required<Groups> groups;  // that the group field divides the records into
  Text description;
};

/// The null hypothesis as a sentence; for an estimate, what is estimated. Placeholders: "{0}" and
/// "{1}" for the titles of the fields in the condition's first and second parameter, "{figure 1}"
/// for a parameter that is a number, "{categories 1}" for one that lists categories, "{order 1}"
/// for all categories of the field in the second parameter.
struct Hypothesis {
  Text condition;  // how the name of the "Condition" table begins; kNone for any
  Text sentence;
};

/// The significance that a decision rests on.
enum class Decides {
  ExactWhereGiven,
  Asymptotic,  ///< also where there is an exact one
  Nothing,     ///< an estimate decides nothing
};

struct Decision {
  Required<Decides> by;
  Text table;  // that holds the significance; kNone: the statistics themselves
};

/// Formulas of effect sizes, from the figures of a result document.
enum class EffectFormula {
  None,
  MeanRanks,           ///< difference of the mean ranks of two groups
  SignedRanks,         ///< rank sums of positive and negative differences from a median
  PairedSignedRanks,   ///< the same of differences of pairs
  EpsilonSquared,      ///< H / (N - 1)
  Concordance,         ///< chi-square / (N (k - 1))
  GivenConcordance,    ///< the figure itself
  ChangedProportion,   ///< of the records that changed class
  ProportionAngles,    ///< difference of the arcs of an observed and a hypothesised proportion
  RootOfChiSquare,     ///< sqrt(chi-square / N)
  StandardisedByN,     ///< z / sqrt(N)
  UntiedStandardised,  ///< the same, where no value is tied between the groups
};

struct EffectSize {
  Required<EffectFormula> formula;
  Text name;
  Text symbol;
};

struct Card {
  Text name;     // as a person asks for it
  Text key;      // in the parameter document; its first letter is the family's
  Text entry;    // of its entries in the translated settings
  Text element;  // the name of its "Algorithm" element
  Required<Family> family;
  Required<Purpose> purpose;
  Text title;
  Text elementTitle = kNone;    // where other tests have elements of that name too
  List<Hypothesis> hypotheses;  // the first that fits the condition holds
  Fields fields;
  // In warnings of the settings' translation, which name no independent test.
  Text warningName = kNone;

  // Another test of the same key brings this one along where one of these flags is true; kNone: it
  // is asked for by its own key.
  List<const FlagKey*> askedBy = kNone;
  Text distribution = kNone;  // "distributionFunction" of its entries
  Settings settings = kNone;
  Settings categoricalSettings = kNone;  // for categorical fields only
  Settings continuousSettings = kNone;   // for continuous fields only

  List<Option> options;
  Decision decision;
  EffectSize effectSize;
  Text page;         // of docs/statistics
  List<Code> codes;  // that belong to it alone, or to it and others of the same element
};

/// "one-sample", "related", "independent".
[[nodiscard]] constexpr Text FamilyName(Family family) {
  return family == Family::OneSample ? "one-sample"
         : family == Family::Related ? "related"
                                     : "independent";
}

/// As result documents classify tests: "One_Sample".
[[nodiscard]] constexpr Text Classification(Family family) {
  return family == Family::OneSample ? "One_Sample"
         : family == Family::Related ? "Related_Samples"
                                     : "Independent_Samples";
}

/// What test keys of the family begin with.
[[nodiscard]] constexpr char KeyLetter(Family family) {
  return family == Family::OneSample ? 'O' : family == Family::Related ? 'R' : 'I';
}

/// "error", "warning", "help".
[[nodiscard]] constexpr Text KindName(Kind kind) {
  return kind == Kind::Error ? "error" : kind == Kind::Warning ? "warning" : "help";
}

}  // namespace catalogue
