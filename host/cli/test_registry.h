#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace npar_host {

enum class TestFamily { OneSample, Related, Independent };

/// How the text of an option is read.
enum class OptionKind {
  Number,        // a number in the C locale
  Count,         // a whole number from 0
  Categories,    // category values joined by "|"
  Expected,      // category=number pairs joined by "|"
  Word,          // one of the option's words
  Words,         // some of the option's words joined by "|"
  NumberOrWord,  // a word of the option, or else a number
};

/// An entry of a test in the parameter document.
struct DocumentEntry {
  const char* key = nullptr;
  const char* value = nullptr;
};

/// A word that a person gives, and the entry that it stands for.
struct OptionWord {
  const char* word;
  DocumentEntry entry;
};

/// One option of a test: what a person types after the test's name, and what the parameter document
/// says for it.
struct TestOption {
  const char* name;
  OptionKind kind;
  const char* documentKey;   // holds the value; null where words alone make entries
  DocumentEntry whenGiven;   // stands beside the value
  DocumentEntry whenAbsent;  // stands alone where the option is not given
  std::span<const OptionWord> words;
  const char* syntax;       // of the value, as help shows it
  const char* defaultText;  // what happens without the option
  const char* help;
};

/// One hypothesis test or estimate as the command line knows it.
struct TestDescription {
  const char* name;         // as typed after --test
  const char* documentKey;  // in the parameter document
  const char* title;
  TestFamily family;
  const char* fields;  // which fields of its family it takes
  std::span<const TestOption> options;
};

/// All tests, family by family.
[[nodiscard]] std::span<const TestDescription> AllTests();
/// The test of that name, or null.
[[nodiscard]] const TestDescription* FindTest(std::string_view name);
[[nodiscard]] std::vector<std::string> TestNames();
[[nodiscard]] const TestOption* FindOption(const TestDescription& test, std::string_view name);

/// "one-sample", "related", "independent": also the names of the options that take the fields.
[[nodiscard]] const char* FamilyName(TestFamily family);

}  // namespace npar_host
