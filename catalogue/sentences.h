#pragma once

#include "catalogue/card.h"

/// What several tests say alike.
namespace catalogue::sentences {

inline constexpr Sentence kNoFieldNamed = {
    "no field to test is named", "Name the field, or the fields, that the test is to act on."};
inline constexpr Sentence kNoGroupNamed = {"no group field is named",
                                           "Name the field that divides the records into groups."};
inline constexpr Sentence kUnknownField = {
    "a field is not in the data[: %*]",
    "Compare the name, upper and lower case too, with the header of the data."};
inline constexpr Sentence kNotContinuous = {
    "a field is not continuous[: %*]",
    "Choose a field that holds measurements, or call it continuous (--continuous, or the data "
    "model); --scores gives ordered categories numbers."};
inline constexpr Sentence kGroupNotCategorical = {
    "the group field is not categorical[: %*]",
    "Choose a group field that holds categories, or call it nominal or ordinal (--nominal, "
    "--ordinal, or the data model)."};
inline constexpr Sentence kTooFewFields = {"fewer than two fields are to be compared",
                                           "Name at least two fields."};
inline constexpr Sentence kNotTwoFields = {"the test compares a pair of fields",
                                           "Name exactly two different fields."};
inline constexpr Sentence kNoGroupValues = {
    "the groups are to be given as lists, and a list is missing or empty",
    "Give at least one category for each group, or let the groups be those of the data."};
inline constexpr Sentence kNoSummary = {
    "the counts of the categories are not available",
    "This should not happen; report it with the parameters and the kind of data."};
inline constexpr Sentence kNotTwoGroups = {
    "the group field does not have exactly two categories",
    "Choose a group field with two categories, or say which categories make up each group."};
inline constexpr Sentence kInBothGroups = {"a category stands in the lists of both groups",
                                           "Leave the category in one of the two lists."};
inline constexpr Sentence kGroupWithoutData = {
    "a group has no records",
    "Check the categories of each group, the missing values and the weights."};
inline constexpr Sentence kTooFewGroups = {
    "fewer than two groups have data",
    "Check the categories of the group field, the missing values and the weights."};
inline constexpr Sentence kTooFewCategories = {
    "the group field has fewer than two categories",
    "Choose a group field with at least two categories."};
inline constexpr Sentence kNoComparisonNamed = {
    "the type of multiple comparison is not given",
    "Give \"none\", \"pairwise\" or \"stepwise\" as the type of multiple comparison."};
inline constexpr Sentence kPairwiseTooFew = {
    "no pairwise comparison, as fewer than three samples are compared",
    "Nothing needs doing: with two samples the overall test is the pairwise comparison."};
inline constexpr Sentence kStepwiseTooFew = {
    "no stepwise comparison, as fewer than three samples are compared",
    "Nothing needs doing: with two samples the overall test says it all."};
inline constexpr Sentence kPairwiseNotSignificant = {
    "no pairwise comparison, as the overall test is not significant",
    "Nothing needs doing: without an overall difference there is no pair to look for."};
inline constexpr Sentence kStepwiseNotSignificant = {
    "no stepwise comparison, as the overall test is not significant",
    "Nothing needs doing: without an overall difference all samples form one subset."};
inline constexpr Sentence kExpectedCounts = {
    "the expected counts were checked[: %0 cells (%1 percent) are below 5, the smallest is %2]",
    "Where many expected counts are small, join categories, or read the p-value with care."};
inline constexpr Sentence kNoCutPoint = {
    "the classes are to be made by a cut point, and none is given",
    "Give the value up to which a record belongs to the first class."};
inline constexpr Sentence kNoCategoryList = {
    "the classes are to be given as categories, and the list is missing or empty",
    "Give the categories that make up the first class."};
inline constexpr Sentence kCutPointWanted = {
    "a continuous field is divided by a cut point or the sample midpoint, not by categories",
    "Give a cut point or choose the midpoint, or test a categorical field."};
inline constexpr Sentence kCategoriesWanted = {
    "a categorical field is divided by its categories, not by a cut point or midpoint",
    "Give the categories of the first class, or let the data decide, or test a continuous field."};
inline constexpr Sentence kUnknownMeasure = {
    "the measure of the field is neither continuous nor categorical",
    "Give the field a measure that the test takes, by an option or in the data model."};
inline constexpr Sentence kNoGivenSuccess = {
    "the success categories are missing, or do not divide any field into success and failure",
    "Give at least one category that is in the data, and not all of them."};
inline constexpr Sentence kNotTwoValues = {
    "the fields do not hold the same two categories",
    "Choose fields with the same two categories, or say which categories count as success."};
inline constexpr Sentence kTooManyValues = {
    "each field is constant, and together they hold more than two categories",
    "Choose fields that share two categories, or say which categories count as success."};
inline constexpr Sentence kExactGiven = {
    "the exact significance is given too, as there are few cases",
    "Nothing needs doing: the document holds the exact p-value beside the asymptotic one."};

// Of tests that look for both fields at once.
inline constexpr Sentence kUnknownPairOfFields = {
    "the test field or the group field is missing or not in the data[: %*]",
    "Name both fields, and compare the names with the header of the data."};

}  // namespace catalogue::sentences
