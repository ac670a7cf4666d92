#pragma once

#include "catalogue/card.h"
#include "catalogue/options.h"
#include "catalogue/sentences.h"

namespace catalogue::ks_one_sample {

inline constexpr FlagKey kUseSample = Flag(
    "isUseSample",
    "whether the parameters of the distribution are those of the data, whatever else is given");
inline constexpr NumberKey kMean =
    Number("mean", kAnyNumber, "from the data", "the mean of the normal distribution", "5.5");
inline constexpr NumberKey kPositiveMean =
    Number("mean", kAboveZero, "from the data",
           "the mean of the Poisson or exponential distribution", "2.5");
inline constexpr NumberKey kStdDev =
    Number("stdDev", kAboveZero, "from the data",
           "the standard deviation of the normal distribution", "1.2");
inline constexpr NumberKey kMinimum =
    Number("min", kAnyNumber, "from the data", "the lower end of the uniform distribution", "0");
inline constexpr NumberKey kMaximum =
    Number("max", kAnyNumber, "from the data",
           "the upper end of the uniform distribution, above the lower one", "10");

inline constexpr Code kUnknownVariable{
    220303, Kind::Error, "the field to test is missing or not in the data[: %*]",
    "Name a field, and compare the name with the header of the data.", Meaning::Name};
inline constexpr Code kNotContinuous{220304, Kind::Error, sentences::kNotContinuous,
                                     Meaning::Field};
inline constexpr Code kExponentialFailed{
    220305, Kind::Error, "an exponential is out of the range of numbers",
    "Check the data and the given parameters for values of an extreme size."};
inline constexpr Code kOutsideDistribution{
    220308, Kind::Error, "a value lies outside the range of the distribution",
    "Check the given range; an exponential distribution has no values below 0."};
inline constexpr Code kLargePoissonMean{
    220309, Kind::Help, "the Poisson mean is at least 100000, so the normal approximation is used",
    "Nothing needs doing: at such a mean the two distributions agree closely."};
inline constexpr Code kNoValidUniform{
    220310, Kind::Error, "no value lies in the range of the uniform distribution",
    "Check the given minimum and maximum, and the missing values."};
inline constexpr Code kUniformExcluded{
    220311, Kind::Warning, "values outside the uniform range are left out[; their weight is %0]",
    "Check the given minimum and maximum if this is more than you expect."};
inline constexpr Code kNoPoisson{220312, Kind::Error,
                                 "the Poisson distribution takes whole numbers from 0 on and a "
                                 "finite mean above 0[, not the value %0 (weight %1)]",
                                 "Test a field of counts, and give a mean above 0."};
inline constexpr Code kNoExponential{
    220313, Kind::Error,
    "the exponential distribution needs a finite mean above 0 and a value from 0 on",
    "Test a field without negative values, and give a mean above 0."};
inline constexpr Code kExponentialExcluded{
    220314, Kind::Warning, "negative values are left out[; their weight is %0]",
    "Check the field: an exponential distribution has no values below 0."};
inline constexpr Code kNoNormal{
    220315, Kind::Error,
    "the standard deviation of the normal distribution is not above 0, or infinite",
    "Give a standard deviation above 0, or test a field that is not constant."};
inline constexpr Code kEmptyUniform{
    220316, Kind::Error, "the range of the uniform distribution is empty or infinite",
    "Give a maximum above the minimum, or test a field that is not constant."};
inline constexpr Code kCodes[] = {kUnknownVariable,     kNotContinuous,    kExponentialFailed,
                                  kOutsideDistribution, kLargePoissonMean, kNoValidUniform,
                                  kUniformExcluded,     kNoPoisson,        kNoExponential,
                                  kExponentialExcluded, kNoNormal,         kEmptyUniform};

inline constexpr const Setting* kNormalSettings[] = {&kUseSample, &kMean, &kStdDev};
inline constexpr Option kNormalOptions[] = {
    NumberOption("mean", kMean, kNone, kNone, "from the data",
                 "the mean of the normal distribution"),
    NumberOption("sd", kStdDev, kNone, kNone, "from the data", "its standard deviation")};
inline constexpr Hypothesis kNormalHypotheses[] = {
    {"Normal",
     "{0} is normally distributed with mean {figure 1} and standard deviation {figure 2}."}};
inline constexpr Card kNormal{.name = "ks-normal",
                              .key = "OKolmogorovSmirnovNormal",
                              .entry = "OKolmogorovSmirnovNormal",
                              .element = "OKolmogorovSmirnov",
                              .family = Family::OneSample,
                              .purpose = Purpose::HypothesisTest,
                              .title = "Kolmogorov-Smirnov test against the normal",
                              .elementTitle = "One-sample Kolmogorov-Smirnov test",
                              .hypotheses = kNormalHypotheses,
                              .fields = options::kEachContinuous,
                              .warningName = "KolmogorovSmirnov",
                              .distribution = "normal",
                              .settings = kNormalSettings,
                              .options = kNormalOptions,
                              .decision = options::kExactDecides,
                              .effectSize = options::kNoEffectSize,
                              .page = "ks_one_sample.md",
                              .codes = kCodes};

inline constexpr const Setting* kUniformSettings[] = {&kUseSample, &kMinimum, &kMaximum};
inline constexpr Option kUniformOptions[] = {
    NumberOption("min", kMinimum, kNone, kNone, "from the data",
                 "the lower end of the uniform distribution"),
    NumberOption("max", kMaximum, kNone, kNone, "from the data", "its upper end")};
inline constexpr Hypothesis kUniformHypotheses[] = {
    {"Uniform", "{0} is uniformly distributed between {figure 1} and {figure 2}."}};
inline constexpr Card kUniform{.name = "ks-uniform",
                               .key = "OKolmogorovSmirnovUniform",
                               .entry = "OKolmogorovSmirnovUniform",
                               .element = "OKolmogorovSmirnov",
                               .family = Family::OneSample,
                               .purpose = Purpose::HypothesisTest,
                               .title = "Kolmogorov-Smirnov test against the uniform",
                               .elementTitle = "One-sample Kolmogorov-Smirnov test",
                               .hypotheses = kUniformHypotheses,
                               .fields = options::kEachContinuous,
                               .warningName = "KolmogorovSmirnov",
                               .distribution = "uniform",
                               .settings = kUniformSettings,
                               .options = kUniformOptions,
                               .decision = options::kExactDecides,
                               .effectSize = options::kNoEffectSize,
                               .page = "ks_one_sample.md",
                               .codes = kCodes};

inline constexpr const Setting* kPoissonSettings[] = {&kUseSample, &kPositiveMean};
inline constexpr Option kPoissonOptions[] = {NumberOption(
    "mean", kPositiveMean, kNone, kNone, "from the data", "the mean of the Poisson distribution")};
inline constexpr Hypothesis kPoissonHypotheses[] = {
    {"Poisson", "{0} has a Poisson distribution with mean {figure 1}."}};
inline constexpr Card kPoisson{.name = "ks-poisson",
                               .key = "OKolmogorovSmirnovPoisson",
                               .entry = "OKolmogorovSmirnovPoisson",
                               .element = "OKolmogorovSmirnov",
                               .family = Family::OneSample,
                               .purpose = Purpose::HypothesisTest,
                               .title = "Kolmogorov-Smirnov test against the Poisson",
                               .elementTitle = "One-sample Kolmogorov-Smirnov test",
                               .hypotheses = kPoissonHypotheses,
                               .fields = options::kEachContinuous,
                               .warningName = "KolmogorovSmirnov",
                               .distribution = "poisson",
                               .settings = kPoissonSettings,
                               .options = kPoissonOptions,
                               .decision = options::kExactDecides,
                               .effectSize = options::kNoEffectSize,
                               .page = "ks_one_sample.md",
                               .codes = kCodes};

inline constexpr const Setting* kExponentialSettings[] = {&kUseSample, &kPositiveMean};
inline constexpr Option kExponentialOptions[] = {
    NumberOption("mean", kPositiveMean, kNone, kNone, "from the data",
                 "the mean of the exponential distribution")};
inline constexpr Hypothesis kExponentialHypotheses[] = {
    {"Exponential", "{0} has an exponential distribution with mean {figure 1}."}};
inline constexpr Card kExponential{.name = "ks-exponential",
                                   .key = "OKolmogorovSmirnovExponential",
                                   .entry = "OKolmogorovSmirnovExponential",
                                   .element = "OKolmogorovSmirnov",
                                   .family = Family::OneSample,
                                   .purpose = Purpose::HypothesisTest,
                                   .title = "Kolmogorov-Smirnov test against the exponential",
                                   .elementTitle = "One-sample Kolmogorov-Smirnov test",
                                   .hypotheses = kExponentialHypotheses,
                                   .fields = options::kEachContinuous,
                                   .warningName = "KolmogorovSmirnov",
                                   .distribution = "exponential",
                                   .settings = kExponentialSettings,
                                   .options = kExponentialOptions,
                                   .decision = options::kExactDecides,
                                   .effectSize = options::kNoEffectSize,
                                   .page = "ks_one_sample.md",
                                   .codes = kCodes};

}  // namespace catalogue::ks_one_sample
