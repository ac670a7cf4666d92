#include "host/messages/messages.h"

namespace npar_host {
namespace {

using enum MessageKind;
constexpr ParameterMeaning kName = ParameterMeaning::Name;
constexpr ParameterMeaning kField = ParameterMeaning::Field;

// What several tests say alike.

struct Sentence {
  std::string_view text;
  std::string_view remedy;
};

constexpr Sentence kNoFieldNamed = {"no field to test is named",
                                    "Name the field, or the fields, that the test is to act on."};
constexpr Sentence kNoGroupNamed = {"no group field is named",
                                    "Name the field that divides the records into groups."};
constexpr Sentence kUnknownField = {
    "a field is not in the data[: %*]",
    "Compare the name, upper and lower case too, with the header of the data."};
constexpr Sentence kNotContinuous = {
    "a field is not continuous[: %*]",
    "Choose a field that holds measurements, or call it continuous in the data model."};
constexpr Sentence kGroupNotCategorical = {
    "the group field is not categorical[: %*]",
    "Choose a group field that holds categories, or call it nominal or ordinal in the data model."};
constexpr Sentence kTooFewFields = {"fewer than two fields are to be compared",
                                    "Name at least two fields."};
constexpr Sentence kNotTwoFields = {"the test compares a pair of fields",
                                    "Name exactly two different fields."};
constexpr Sentence kNoGroupValues = {
    "the groups are to be given as lists, and a list is missing or empty",
    "Give at least one category for each group, or let the groups be those of the data."};
constexpr Sentence kNoSummary = {
    "the counts of the categories are not available",
    "This should not happen; report it with the parameters and the kind of data."};
constexpr Sentence kNotTwoGroups = {
    "the group field does not have exactly two categories",
    "Choose a group field with two categories, or say which categories make up each group."};
constexpr Sentence kInBothGroups = {"a category stands in the lists of both groups",
                                    "Leave the category in one of the two lists."};
constexpr Sentence kGroupWithoutData = {
    "a group has no records",
    "Check the categories of each group, the missing values and the weights."};
constexpr Sentence kTooFewGroups = {
    "fewer than two groups have data",
    "Check the categories of the group field, the missing values and the weights."};
constexpr Sentence kTooFewCategories = {"the group field has fewer than two categories",
                                        "Choose a group field with at least two categories."};
constexpr Sentence kNoComparisonNamed = {
    "the type of multiple comparison is not given",
    "Give \"none\", \"pairwise\" or \"stepwise\" as the type of multiple comparison."};
constexpr Sentence kPairwiseTooFew = {
    "no pairwise comparison, as fewer than three samples are compared",
    "Nothing needs doing: with two samples the overall test is the pairwise comparison."};
constexpr Sentence kStepwiseTooFew = {
    "no stepwise comparison, as fewer than three samples are compared",
    "Nothing needs doing: with two samples the overall test says it all."};
constexpr Sentence kPairwiseNotSignificant = {
    "no pairwise comparison, as the overall test is not significant",
    "Nothing needs doing: without an overall difference there is no pair to look for."};
constexpr Sentence kStepwiseNotSignificant = {
    "no stepwise comparison, as the overall test is not significant",
    "Nothing needs doing: without an overall difference all samples form one subset."};
constexpr Sentence kExpectedCounts = {
    "the expected counts were checked[: %0 cells (%1 percent) are below 5, the smallest is %2]",
    "Where many expected counts are small, join categories, or read the p-value with care."};
constexpr Sentence kNoCutPoint = {
    "the classes are to be made by a cut point, and none is given",
    "Give the value up to which a record belongs to the first class."};
constexpr Sentence kNoCategoryList = {
    "the classes are to be given as categories, and the list is missing or empty",
    "Give the categories that make up the first class."};
constexpr Sentence kCutPointWanted = {
    "a continuous field is divided by a cut point or the sample midpoint, not by categories",
    "Give a cut point or choose the midpoint, or test a categorical field."};
constexpr Sentence kCategoriesWanted = {
    "a categorical field is divided by its categories, not by a cut point or midpoint",
    "Give the categories of the first class, or let the data decide, or test a continuous field."};
constexpr Sentence kUnknownMeasure = {
    "the measure of the field is neither continuous nor categorical",
    "Give the field a measure that the test takes in the data model."};
constexpr Sentence kNoGivenSuccess = {
    "the success categories are missing, or do not divide any field into success and failure",
    "Give at least one category that is in the data, and not all of them."};
constexpr Sentence kNotTwoValues = {
    "the fields do not hold the same two categories",
    "Choose fields with the same two categories, or say which categories count as success."};
constexpr Sentence kTooManyValues = {
    "each field is constant, and together they hold more than two categories",
    "Choose fields that share two categories, or say which categories count as success."};
constexpr Sentence kExactGiven = {
    "the exact significance is given too, as there are few cases",
    "Nothing needs doing: the document holds the exact p-value beside the asymptotic one."};

constexpr MessageText Say(std::int32_t code, MessageKind kind, const Sentence& sentence,
                          ParameterMeaning parameters = ParameterMeaning::Plain) {
  return {code, kind, sentence.text, sentence.remedy, parameters};
}

constexpr MessageText kMessages[] = {
    {1, Error, "the run was cancelled", "Start it again if it was cancelled by mistake."},
    {6, Error, "there is no result to write, or the component could not be configured",
     "Look at the messages before this one; they say what failed."},

    // The run.
    {220001, Error, "no test is selected that can act on the selected fields",
     "Select a test, or the automatic choice, for a family with fields of the fitting measure."},
    {220002, Error, "there is not enough memory to set the run or the test up",
     "Close other programs, or analyse fewer records, fields or groups at once."},
    {220003, Error, "there are no records to analyse",
     "Check the missing values and the weights; records without a valid value are left out."},
    {220004, Error, "a field is of a measure that no test takes",
     "Call the field continuous, ordinal or nominal in the data model, or leave it out."},
    {220005, Error, "the records cannot be read in the order that is needed",
     "This should not happen; report it with the parameters and the kind of data."},
    {220007, Error, "a probability could not be computed from these counts",
     "Check the test probability and the confidence level, and the weights of the records."},
    {220008, Error, "the frequency weight is among the fields to test",
     "Take the weight field off the list of fields, or choose another field as weight."},
    {220009, Error, "independent samples are to be compared, and no group field is selected",
     "Name the field that divides the records into groups."},
    {220010, Error, "no field is selected",
     "Name at least one field to test: for one sample, related samples or independent samples."},
    {220011, Error, "a selected field is not in the data[: %*]",
     "Compare the names, upper and lower case too, with the header of the data.", kName},
    {220012, Error, "the memory ran out during the run",
     "Close other programs, or analyse fewer records or fields at once."},
    {220013, Warning, "a sample[ (%group)] is in no homogeneous subset with another one",
     "Nothing needs doing: it differs from all others by the stepwise comparison."},
    {220014, Warning, "no selected test takes the continuous related fields[: %0]",
     "Select a test for continuous related fields, such as Wilcoxon's or Friedman's."},
    {220015, Warning, "no selected test takes the ordinal related fields[: %0]",
     "Select a test for categorical related fields, such as marginal homogeneity."},
    {220016, Warning, "no selected test takes the nominal related fields[: %0]",
     "Select a test for categorical related fields, such as McNemar's or Cochran's Q."},
    {220017, Warning, "the number of continuous related fields does not fit[ these tests: %0]",
     "Name two continuous fields for a test of pairs, two or more for a test of several samples."},
    {220018, Warning, "the number of ordinal related fields does not fit[ these tests: %0]",
     "Name two ordinal fields for a test of pairs, two or more for a test of several samples."},
    {220019, Warning, "the number of nominal related fields does not fit[ these tests: %0]",
     "Name two nominal fields for a test of pairs, two or more for a test of several samples."},
    {220020, Warning, "related-samples tests have no field of a measure that they take[: %0]",
     "Name related fields of the measure that these tests take, or take the tests off."},
    {220021, Warning, "the chi-square test leaves continuous fields out[: %0]",
     "Call these fields nominal or ordinal in the data model if they hold categories."},
    {220022, Warning, "one-sample tests have no field of a measure that they take[: %0]",
     "Name fields of the measure that these tests take, or take the tests off."},
    {220023, Warning, "categorical fields[ %0] are left out by tests of continuous fields[: %1]",
     "Select a test for categorical fields too, such as the chi-square or the binomial test."},
    {220024, Warning, "no independent-samples test takes categorical test fields[: %0]",
     "Test continuous fields; a categorical field can serve as the group field."},
    {220025, Warning, "no selected test takes the independent-samples fields as they are[: %0]",
     "Select an independent-samples test for continuous fields, and name such fields."},
    {220026, Error, "a frequency weight is above 2147483647 or not a number",
     "Scale the weights down, or give the record in several parts."},

    // Runs test.
    {220101, Error, "the field or the way to divide it is missing or unknown",
     "Name a field, and median, mean, mode or a value of your own as the cut point."},
    Say(220103, Error, kUnknownField, kName),
    {220109, Error, "the given categories are missing, or leave one of the two groups empty",
     "Give some of the field's categories as the first group, and not all of them."},
    Say(220110, Error, kNoCutPoint),
    {220111, Error, "the categorical field does not have exactly two groups",
     "Choose a field with two categories, or give the categories of the first group."},
    {220112, Error, "all records lie on one side of the cut point",
     "Choose a cut point with records on both sides."},

    // Chi-square test.
    {220201, Error, "a setting that the test needs is missing",
     "Give the field and the way in which its categories are formed."},
    Say(220203, Error, kNoFieldNamed),
    {220204, Error, "a field is not in the data or not categorical[: %*]",
     "Compare the name with the header of the data; call the field nominal or ordinal if it holds "
     "categories.",
     kField},
    {220209, Error, "the field or the given list has fewer than two categories[: %*]",
     "Test a field with at least two categories, and give at least two with expected values.",
     kField},
    Say(220211, Help, kExpectedCounts),
    {220212, Error, "the expected values are incomplete or not above 0[: %*]",
     "Give an expected value above 0 for each category to be compared.", kField},

    // One-sample Kolmogorov-Smirnov test.
    {220303, Error, "the field to test is missing or not in the data[: %*]",
     "Name a field, and compare the name with the header of the data.", kName},
    Say(220304, Error, kNotContinuous, kField),
    {220305, Error, "an exponential is out of the range of numbers",
     "Check the data and the given parameters for values of an extreme size."},
    {220308, Error, "a value lies outside the range of the distribution",
     "Check the given range; an exponential distribution has no values below 0."},
    {220309, Help, "the Poisson mean is at least 100000, so the normal approximation is used",
     "Nothing needs doing: at such a mean the two distributions agree closely."},
    {220310, Error, "no value lies in the range of the uniform distribution",
     "Check the given minimum and maximum, and the missing values."},
    {220311, Warning, "values outside the uniform range are left out[; their weight is %0]",
     "Check the given minimum and maximum if this is more than you expect."},
    {220312, Error,
     "the Poisson distribution takes whole numbers from 0 on and a mean above 0[, not the value %0 "
     "(weight %1)]",
     "Test a field of counts, and give a mean above 0."},
    {220313, Error, "the exponential distribution needs a mean above 0 and a value from 0 on",
     "Test a field without negative values, and give a mean above 0."},
    {220314, Warning, "negative values are left out[; their weight is %0]",
     "Check the field: an exponential distribution has no values below 0."},
    {220315, Error, "the standard deviation of the normal distribution is not above 0",
     "Give a standard deviation above 0, or test a field that is not constant."},
    {220316, Error, "the range of the uniform distribution is empty",
     "Give a maximum above the minimum, or test a field that is not constant."},

    // Moses test of extreme reactions.
    Say(220501, Error, kNoGroupValues),
    Say(220503, Error, kUnknownField, kName),
    Say(220506, Error, kNoSummary),
    Say(220509, Error, kNotTwoGroups),
    Say(220510, Error, kInBothGroups),
    Say(220511, Error, kGroupWithoutData),
    Say(220512, Error, kNoFieldNamed),
    Say(220513, Error, kNoGroupNamed),
    Say(220514, Error, kGroupNotCategorical, kField),
    Say(220515, Error, kNotContinuous, kField),
    {220516, Error,
     "the number of outliers is missing, negative, or leaves nothing of the control group",
     "Give a number from 0 up to less than half of the control group, or let it be chosen."},

    // Wald-Wolfowitz runs test.
    Say(220601, Error, kNoGroupValues),
    Say(220603, Error, kUnknownField, kName),
    Say(220606, Error, kNoSummary),
    Say(220609, Error, kNotTwoGroups),
    Say(220610, Error, kInBothGroups),
    Say(220611, Error, kGroupWithoutData),
    Say(220612, Error, kNoFieldNamed),
    Say(220613, Error, kNoGroupNamed),
    Say(220614, Error, kGroupNotCategorical, kField),
    Say(220615, Error, kNotContinuous, kField),
    {220616, Warning, "values are tied between the groups[, %0 of them]",
     "Look at both the smallest and the largest number of runs; the decision takes the largest."},

    // Mann-Whitney U test.
    Say(220701, Error, kNoGroupValues),
    Say(220703, Error, kUnknownField, kName),
    Say(220706, Error, kNoSummary),
    Say(220709, Error, kNotTwoGroups),
    Say(220710, Error, kInBothGroups),
    Say(220711, Error, kGroupWithoutData),
    Say(220712, Error, kNoFieldNamed),
    Say(220713, Error, kNoGroupNamed),
    Say(220714, Error, kGroupNotCategorical, kField),
    Say(220715, Error, kNotContinuous, kField),

    // One-sample Wilcoxon signed-rank test.
    {220801, Error, "the hypothesised median is to be given, and is not",
     "Give the median as a number."},
    Say(220803, Error, kUnknownField, kName),
    Say(220812, Error, kNoFieldNamed),
    Say(220815, Error, kNotContinuous, kField),

    // Sign test.
    Say(220903, Error, kUnknownField, kName),
    Say(220912, Error, kNoFieldNamed),
    Say(220915, Error, kNotContinuous, kField),
    Say(220916, Help, kExactGiven),
    {220917, Error, "more than two fields are named for the sign test",
     "Name exactly two different fields."},
    Say(220918, Error, kNotTwoFields),

    // Wilcoxon matched-pairs test.
    Say(221003, Error, kUnknownField, kName),
    Say(221004, Error, kNotContinuous, kField),
    Say(221009, Error, kNotTwoFields),
    Say(221010, Error, kNoFieldNamed),

    // Cochran's Q test.
    Say(221203, Error, kUnknownField, kName),
    Say(221206, Error, kNoSummary),
    Say(221209, Error, kNotTwoValues),
    {221210, Error, "the records do not divide into success and failure",
     "Give success categories that are in the data, and not all of them; check for constant "
     "fields."},
    Say(221213, Error, kTooManyValues),
    Say(221214, Error, kTooFewFields),
    Say(221215, Error, kNoFieldNamed),
    {221216, Error, "a field is not categorical, or of another type than the first[: %*]",
     "Choose categorical fields that all hold numbers or all hold texts.", kField},
    Say(221217, Warning, kStepwiseTooFew),
    Say(221218, Warning, kStepwiseNotSignificant),
    Say(221219, Warning, kPairwiseTooFew),
    Say(221220, Warning, kPairwiseNotSignificant),

    // Binomial test.
    Say(221303, Error, kUnknownField, kName),
    Say(221304, Error, kUnknownMeasure, kField),
    Say(221306, Error, kNoSummary),
    {221309, Error, "the field has more than two categories",
     "Choose a field with two categories, or give those of the first class."},
    {221310, Error, "the categories hold no records",
     "Check the missing values and the weights of the records."},
    {221311, Help,
     "the observed share of the first class is below the hypothesised one[, %0], so the lower tail "
     "is tested",
     "Nothing needs doing: the p-value is the one-sided one of that direction."},
    Say(221312, Error, kNoCategoryList),
    Say(221313, Error, kNoCutPoint),
    Say(221314, Error, kNoFieldNamed),
    Say(221315, Error, kCutPointWanted, kField),
    Say(221316, Error, kCategoriesWanted, kField),
    {221317, Error, "the test probability is not between 0 and 1",
     "Give a probability above 0 and below 1."},

    // Confidence interval of a proportion.
    Say(221503, Error, kUnknownField, kName),
    Say(221504, Error, kUnknownMeasure, kField),
    Say(221511, Error, kNoCategoryList),
    Say(221512, Error, kNoCutPoint),
    Say(221513, Error, kNoFieldNamed),
    Say(221514, Error, kCutPointWanted, kField),
    Say(221515, Error, kCategoriesWanted, kField),

    // McNemar test.
    Say(221603, Error, kNoFieldNamed),
    {221605, Error, "the exact probability could not be computed from these counts",
     "Check the weights of the records."},
    Say(221606, Error, kNoSummary),
    Say(221609, Error, kNotTwoValues),
    Say(221610, Error, kTooManyValues),
    Say(221611, Error, kNoGivenSuccess),
    Say(221612, Help, kExactGiven),
    {221613, Error,
     "a field is not in the data, not categorical, or of another type than the first[: %*]",
     "Name two categorical fields that both hold numbers or both hold texts.", kField},
    Say(221614, Error, kNotTwoFields),

    // Marginal homogeneity test.
    Say(221703, Error, kNoFieldNamed),
    {221709, Error, "the categories of the two fields cannot be joined[: %*]",
     "Choose two fields that both hold numbers or both hold texts.", kField},
    {221710, Error, "a field is not in the data, not categorical, or without a category[: %*]",
     "Name two categorical fields that have data.", kField},
    Say(221711, Error, kNotTwoFields),

    // Friedman test.
    Say(221801, Error, kNoComparisonNamed),
    Say(221803, Error, kUnknownField, kName),
    Say(221804, Error, kNotContinuous, kField),
    Say(221809, Error, kTooFewFields),
    Say(221811, Error, kNoFieldNamed),
    Say(221813, Warning, kPairwiseNotSignificant),
    Say(221814, Warning, kStepwiseNotSignificant),
    Say(221815, Warning, kPairwiseTooFew),
    Say(221816, Warning, kStepwiseTooFew),

    // Kendall's coefficient of concordance.
    Say(221901, Error, kNoComparisonNamed),
    Say(221903, Error, kUnknownField, kName),
    Say(221904, Error, kNotContinuous, kField),
    Say(221909, Error, kTooFewFields),
    Say(221911, Error, kNoFieldNamed),
    Say(221913, Warning, kPairwiseNotSignificant),
    Say(221914, Warning, kStepwiseNotSignificant),
    Say(221915, Warning, kPairwiseTooFew),
    Say(221916, Warning, kStepwiseTooFew),

    // Two-sample Kolmogorov-Smirnov test.
    {222001, Error, "a setting that the test needs is missing, or a list of categories is empty",
     "Name the fields, and give at least one category for each group if groups are given."},
    {222003, Error, "the test field or the group field is missing or not in the data[: %*]",
     "Name both fields, and compare the names with the header of the data.", kName},
    {222005, Error, "an exponential is out of the range of numbers",
     "Check the data for values of an extreme size."},
    Say(222009, Error, kNotTwoGroups),
    Say(222010, Error, kGroupWithoutData),
    {222011, Warning, "the last category of the records is in neither group",
     "Check the lists of categories that make up the groups."},
    Say(222012, Error, kNotContinuous, kField),
    Say(222013, Error, kGroupNotCategorical, kField),

    // Kruskal-Wallis test.
    Say(222101, Error, kNoComparisonNamed),
    {222103, Error, "the test field or the group field is missing or not in the data[: %*]",
     "Name both fields, and compare the names with the header of the data.", kName},
    Say(222109, Error, kNotContinuous, kField),
    Say(222110, Error, kGroupNotCategorical, kField),
    {222111, Help, "the p-value is asymptotic and the statistic corrected for ties",
     "Nothing needs doing; with very small groups read the p-value with care."},
    Say(222112, Error, kTooFewGroups),
    Say(222115, Error, kTooFewCategories),
    Say(222116, Warning, kStepwiseTooFew),
    Say(222117, Warning, kStepwiseNotSignificant),
    Say(222118, Warning, kPairwiseTooFew),
    Say(222119, Warning, kPairwiseNotSignificant),

    // Jonckheere-Terpstra test.
    Say(222203, Error, kUnknownField, kName),
    {222210, Error, "groups without records cannot be compared",
     "Check the categories of the group field, the missing values and the weights."},
    Say(222211, Warning, kPairwiseTooFew),
    Say(222212, Warning, kStepwiseTooFew),
    Say(222213, Warning, kPairwiseNotSignificant),
    Say(222214, Warning, kStepwiseNotSignificant),
    Say(222215, Error, kNoFieldNamed),
    Say(222216, Error, kNoGroupNamed),
    Say(222217, Error, kGroupNotCategorical, kField),
    Say(222218, Error, kNotContinuous, kField),

    // Median test.
    {222302, Error, "the median is to be given, and is not", "Give the median as a number."},
    {222303, Error, "the test field or the group field is missing or not in the data[: %*]",
     "Name both fields, and compare the names with the header of the data.", kName},
    Say(222309, Error, kNotContinuous, kField),
    Say(222310, Error, kGroupNotCategorical, kField),
    Say(222311, Help, kExpectedCounts),
    Say(222312, Error, kTooFewGroups),
    {222313, Error, "all records lie on one side of the median",
     "Give a median with records at or below and above it, or test a field with fewer ties."},
    Say(222315, Error, kTooFewCategories),
    Say(222316, Warning, kStepwiseTooFew),
    Say(222317, Warning, kStepwiseNotSignificant),
    Say(222318, Warning, kPairwiseTooFew),
    Say(222319, Warning, kPairwiseNotSignificant),

    // Hodges-Lehmann estimate for pairs.
    Say(222403, Error, kUnknownField, kName),
    Say(222404, Error, kNotContinuous, kField),
    Say(222409, Error, kNotTwoFields),
    Say(222410, Error, kNoFieldNamed),

    // Hodges-Lehmann estimate for two groups.
    Say(222501, Error, kNoGroupValues),
    Say(222503, Error, kUnknownField, kName),
    Say(222506, Error, kNoSummary),
    Say(222509, Error, kNotTwoGroups),
    Say(222510, Error, kInBothGroups),
    Say(222511, Error, kGroupWithoutData),
    Say(222512, Error, kNoFieldNamed),
    Say(222513, Error, kNoGroupNamed),
    Say(222514, Error, kGroupNotCategorical, kField),
    Say(222515, Error, kNotContinuous, kField),

    // Host and component.
    {240001, Error, "the component could not be made",
     "Check that the component and its libraries belong together, and that there is memory left."},
    {240004, Error, "the fields of the data model cannot be turned into variables",
     "Check the measure, storage and role of each field in the data model."},
    {240010, Error, "there is no parameter document",
     "Give the parameters of the run, which name its fields and tests."},
    {240011, Error, "the parameter document cannot be read[: %*]",
     "Correct the document at that place; schema/parameters.xsd describes it."},
    {240012, Error, "there is no data model",
     "Give the data model of the input, which lists its fields."},
    {240013, Error, "the data model cannot be read[: %*]",
     "Correct the document at that place; schema/datamodel.xsd describes it."},
    {240014, Error, "the records could not be read to their end[; the host's code is %*]",
     "Check the source of the data; nothing was computed from the records read so far."},
    {240015, Error, "an operation was asked for that the component or the host does not offer",
     "Check that host and component belong together; the host's documents list what it offers."},
    {240016, Error, "the host delivered its records in a form that cannot be read",
     "Check the host: it delivers no more records than asked for, each value a double."},
    {240037, Error, "no record was read",
     "Check that the data hold records, and that not all are dropped for missing values or "
     "weights."},
};

}  // namespace

std::span<const MessageText> AllMessages() { return kMessages; }

}  // namespace npar_host
