#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "catalogue/card.h"
#include "foundation/names.h"

/// Flattens the host's parameters: run-wide keys as they are, and for each test to run one nested
/// setting, named by the test, with the test's number and what its construct function reads.
///
/// The host's document keeps an order: the flag of a family ("isAutomaticallyRelated"), then the
/// test keys of that family. With the flag set, NPARAutoSelect chooses the tests instead.
class NPARSettingsTranslator final {
 public:
  /// Nothing is taken over; `target` is filled by Run.
  NPARSettingsTranslator(const QDSettings& source, const QDVarList& variables, QDSettings& target);

  /// Error 220001: no entry was made.
  QDStatus Run();

  /// The warnings of the run, and beside each the parameters of its message.
  [[nodiscard]] const std::vector<QDStatus>& GetWarningCodes() const { return warningCodes; }
  [[nodiscard]] const std::vector<std::vector<std::string>>& GetWarningParameters() const {
    return warningParameters;
  }

 private:
  using Names = std::vector<std::string>;

  /// Related fields of one kind, and what became of them.
  struct RelatedFields {
    Names names;
    bool used = false;  // some selected test took them
    Names mismatch;     // selected tests that take another number of them
  };

  struct Family;
  static const Family kFamilies[];
  static const catalogue::Card* FindTest(const Family& family, const std::string& name);

  void CopyRunKeys();
  void TranslateFamily(const Family& family, std::size_t& index);
  void MakeAutomaticEntries(const Family& family);
  void MakeOneSampleEntries(const catalogue::Card& test, const QDSettings& chosen);
  void MakeOneSampleEntry(const catalogue::Card& test, const QDSettings& chosen,
                          const std::string& field, bool isCategorical);
  void MakeRelatedEntries(const catalogue::Card& test, const QDSettings& chosen);
  void MakeIndependentEntries(const catalogue::Card& test, const QDSettings& chosen);
  QDSettings StartEntry(const catalogue::Card& test);
  void CollectOneSampleWarnings();
  void CollectRelatedWarnings();
  void CollectIndependentWarnings();
  void Warn(const catalogue::Code& code, std::vector<std::string> parameters);

  const QDSettings& source;
  const QDVarList& variables;
  QDSettings& target;

  Names oneSampleFields;
  Names oneSampleContinuous;
  Names oneSampleCategorical;
  Names relatedFields;
  RelatedFields relatedContinuous;
  RelatedFields relatedOrdinal;
  RelatedFields relatedNominal;
  Names independentFields;
  Names independentContinuous;
  Names independentCategorical;
  std::string groupField;

  std::int32_t testCounter = -1;  // "testIndex" of the entry last made
  std::vector<QDStatus> warningCodes;
  std::vector<std::vector<std::string>> warningParameters;

  Names testsSkippingCategorical;
  Names testsWithoutFields;
  bool chiSquareSkippedContinuous = false;
  Names relatedTestsWithoutFields;
  bool isIndependentSelected = false;
};
