#pragma once

#include "catalogue/card.h"

/// What belongs to a run and to no single test.
namespace catalogue::run {

// Keys of the parameter document.

inline constexpr Setting kOneSampleVariables =
    Other("oneSampleVariables", Type::Fields, kNone, "the fields to test each on its own", "a|b");
inline constexpr Setting kRelatedVariables =
    Other("relatedVariables", Type::Fields, kNone,
          "the fields that were measured on the same records, in their order", "before|after");
inline constexpr Setting kIndependentVariables =
    Other("independentVariables", Type::Fields, kNone,
          "the fields to compare between the groups of `groupVariable`", "score");
inline constexpr Setting kGroupVariable =
    Other("groupVariable", Type::Field, "has to be given with `independentVariables`",
          "the categorical field that divides the records into groups", "region");
inline constexpr Setting kCaseIdField =
    Other("caseIDField", Type::Field, kNone,
          "the field that names the records, for outliers in box plots; records without a value "
          "of it are left out",
          "id");
inline constexpr WordKey kMissingTreatment =
    Word("missingTreatment", "analysis|listwise", "analysis",
         "leave records with a missing value out of the tests that need the value, or of all tests",
         "listwise");
inline constexpr WordKey kUserMissing =
    Word("userMissing", "include|exclude", "include",
         "whether values that the data model calls `missing=\"user\"` are values, or missing "
         "values in all selected fields",
         "exclude");
inline constexpr NumberKey kSigLevel =
    Number("sigLevel", kProbability, 0.05, "a test rejects when its p-value is below it", "0.01");
inline constexpr NumberKey kConfidenceLevel =
    Number("confidenceLevel", kPercentage, 95.0,
           "the level of confidence intervals, a percentage: 95, not 0.95", "99");
inline constexpr FlagKey kExtendedFigures =
    Flag("extendedFigures",
         "whether each test also tells what a write-up needs beside its result: exact values with "
         "ties, one-sided ones, effect sizes, intervals, sizes and quartiles of groups");

constexpr Setting Automatic(Text key, Text meaning) {
  return {.key = key,
          .type = Type::Flag,
          .range = kAnyNumber,
          .values = kNone,
          .byDefault = "has to be given for the family to be tested",
          .meaning = meaning,
          .example = "false"};
}
inline constexpr FlagKey kIsAutomaticallyOneSample =
    Automatic("isAutomaticallyOneSample",
              "whether the tests of `oneSampleVariables` are chosen by measurement level; "
              "otherwise they are those of the test keys that follow it directly");
inline constexpr FlagKey kIsAutomaticallyRelated =
    Automatic("isAutomaticallyRelated", "the same for `relatedVariables`");
inline constexpr FlagKey kIsAutomaticallyIndependent =
    Automatic("isAutomaticallyIndependent", "the same for `independentVariables`");

inline constexpr const Setting* kSettings[] = {&kOneSampleVariables,
                                               &kRelatedVariables,
                                               &kIndependentVariables,
                                               &kGroupVariable,
                                               &kCaseIdField,
                                               &kMissingTreatment,
                                               &kUserMissing,
                                               &kSigLevel,
                                               &kConfidenceLevel,
                                               &kExtendedFigures,
                                               &kIsAutomaticallyOneSample,
                                               &kIsAutomaticallyRelated,
                                               &kIsAutomaticallyIndependent};

// Codes.

inline constexpr Text kTitle = "Run";

inline constexpr Code kCancelled{1, Kind::Error, "the run was cancelled",
                                 "Start it again if it was cancelled by mistake."};
inline constexpr Code kNoResult{
    6, Kind::Error, "there is no result to write, or the component could not be configured",
    "Look at the messages before this one; they say what failed."};
inline constexpr Code kNoTest{
    220001, Kind::Error, "no test is selected that can act on the selected fields",
    "Select a test, or the automatic choice, for a family with fields of the fitting measure."};
inline constexpr Code kNoMemory{
    220002, Kind::Error, "there is not enough memory to set the run or the test up",
    "Close other programs, or analyse fewer records, fields or groups at once."};
inline constexpr Code kNoData{
    220003, Kind::Error, "there are no records to analyse",
    "Check the missing values and the weights; records without a valid value are left out."};
inline constexpr Code kUnfitVariable{
    220004, Kind::Error, "a field is of a measure that no test takes",
    "Call the field continuous, ordinal or nominal, by an option or in the data model, or leave it "
    "out."};
inline constexpr Code kNoSortedData{
    220005, Kind::Error, "the records cannot be read in the order that is needed",
    "This should not happen; report it with the parameters and the kind of data."};
inline constexpr Code kDistributionFailed{
    220007, Kind::Error, "a probability could not be computed from these counts",
    "Check the test probability and the confidence level, and the weights of the records."};
inline constexpr Code kWeightAnalysed{
    220008, Kind::Error, "the frequency weight is among the fields to test",
    "Take the weight field off the list of fields, or choose another field as weight."};
inline constexpr Code kNoGroupField{
    220009, Kind::Error, "independent samples are to be compared, and no group field is selected",
    "Name the field that divides the records into groups."};
inline constexpr Code kNoField{
    220010, Kind::Error, "no field is selected",
    "Name at least one field to test: for one sample, related samples or independent samples."};
inline constexpr Code kUnknownField{
    220011, Kind::Error, "a selected field is not in the data[: %*]",
    "Compare the names, upper and lower case too, with the header of the data.", Meaning::Name};
inline constexpr Code kMemoryExhausted{
    220012, Kind::Error, "the memory ran out during the run",
    "Close other programs, or analyse fewer records or fields at once."};
inline constexpr Code kSampleStandsAlone{
    220013, Kind::Warning, "a sample[ (%group)] is in no homogeneous subset with another one",
    "Nothing needs doing: it differs from all others by the stepwise comparison."};
inline constexpr Code kRelatedContinuousUnused{
    220014, Kind::Warning, "no selected test takes the continuous related fields[: %0]",
    "Select a test for continuous related fields, such as Wilcoxon's or Friedman's."};
inline constexpr Code kRelatedOrdinalUnused{
    220015, Kind::Warning, "no selected test takes the ordinal related fields[: %0]",
    "Select a test for categorical related fields, such as marginal homogeneity."};
inline constexpr Code kRelatedNominalUnused{
    220016, Kind::Warning, "no selected test takes the nominal related fields[: %0]",
    "Select a test for categorical related fields, such as McNemar's or Cochran's Q."};
inline constexpr Code kRelatedContinuousMismatch{
    220017, Kind::Warning, "the number of continuous related fields does not fit[ these tests: %0]",
    "Name two continuous fields for a test of pairs, two or more for a test of several samples."};
inline constexpr Code kRelatedOrdinalMismatch{
    220018, Kind::Warning, "the number of ordinal related fields does not fit[ these tests: %0]",
    "Name two ordinal fields for a test of pairs, two or more for a test of several samples."};
inline constexpr Code kRelatedNominalMismatch{
    220019, Kind::Warning, "the number of nominal related fields does not fit[ these tests: %0]",
    "Name two nominal fields for a test of pairs, two or more for a test of several samples."};
inline constexpr Code kRelatedWithoutFields{
    220020, Kind::Warning, "related-samples tests have no field of a measure that they take[: %0]",
    "Name related fields of the measure that these tests take, or take the tests off."};
inline constexpr Code kChiSquareSkipsContinuous{
    220021, Kind::Warning, "the chi-square test leaves continuous fields out[: %0]",
    "Call these fields nominal or ordinal if they hold categories (--nominal, --ordinal, or the "
    "data model)."};
inline constexpr Code kOneSampleWithoutFields{
    220022, Kind::Warning, "one-sample tests have no field of a measure that they take[: %0]",
    "Name fields of the measure that these tests take, or take the tests off."};
inline constexpr Code kTestsSkipCategorical{
    220023, Kind::Warning,
    "categorical fields[ %0] are left out by tests of continuous fields[: %1]",
    "Select a test for categorical fields too, such as the chi-square or the binomial test."};
inline constexpr Code kIndependentCategorical{
    220024, Kind::Warning, "no independent-samples test takes categorical test fields[: %0]",
    "Test continuous fields; a categorical field can serve as the group field."};
inline constexpr Code kIndependentContinuousUnused{
    220025, Kind::Warning,
    "no selected test takes the independent-samples fields as they are[: %0]",
    "Select an independent-samples test for continuous fields, and name such fields."};
inline constexpr Code kWeightTooLarge{
    220026, Kind::Error, "a frequency weight is above 2147483647 or not a number",
    "Scale the weights down, or give the record in several parts."};
inline constexpr Code kTooManySamples{
    220027, Kind::Warning, "multiple comparisons take no more than 4096 samples[; there are %0]",
    "Compare fewer groups or fields; the overall result stands, and the median test steps down "
    "among any number."};
inline constexpr Code kCodes[] = {kCancelled,
                                  kNoResult,
                                  kNoTest,
                                  kNoMemory,
                                  kNoData,
                                  kUnfitVariable,
                                  kNoSortedData,
                                  kDistributionFailed,
                                  kWeightAnalysed,
                                  kNoGroupField,
                                  kNoField,
                                  kUnknownField,
                                  kMemoryExhausted,
                                  kSampleStandsAlone,
                                  kRelatedContinuousUnused,
                                  kRelatedOrdinalUnused,
                                  kRelatedNominalUnused,
                                  kRelatedContinuousMismatch,
                                  kRelatedOrdinalMismatch,
                                  kRelatedNominalMismatch,
                                  kRelatedWithoutFields,
                                  kChiSquareSkipsContinuous,
                                  kOneSampleWithoutFields,
                                  kTestsSkipCategorical,
                                  kIndependentCategorical,
                                  kIndependentContinuousUnused,
                                  kWeightTooLarge,
                                  kTooManySamples};

}  // namespace catalogue::run
