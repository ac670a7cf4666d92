#include "arithmetic/elementary.h"

#include "arithmetic/elementary_functions.h"

namespace arithmetic {

Extended exp(Extended x) noexcept { return functions::Exponential(x); }
Extended expm1(Extended x) noexcept { return functions::ExponentialLessOne(x); }
Extended log(Extended x) noexcept { return functions::Logarithm(x); }
Extended log1p(Extended x) noexcept { return functions::LogarithmOfOneMore(x); }
Extended pow(Extended x, Extended y) noexcept { return functions::Power(x, y); }
Extended asin(Extended x) noexcept { return functions::ArcSine(x); }
Extended ProductRest(Extended a, Extended b) noexcept { return functions::ProductRest(a, b); }

bool IsFinite(Extended x) noexcept { return x - x == 0; }

double Exp(double x) noexcept { return static_cast<double>(exp(x)); }
double Expm1(double x) noexcept { return static_cast<double>(expm1(x)); }
double Log(double x) noexcept { return static_cast<double>(log(x)); }
double Log1p(double x) noexcept { return static_cast<double>(log1p(x)); }
double Pow(double x, double y) noexcept { return static_cast<double>(pow(x, y)); }
double Log10(double x) noexcept { return static_cast<double>(log(x) / log(Extended(10))); }
double Cbrt(double x) noexcept { return static_cast<double>(exp(log(x) / 3)); }
double Asin(double x) noexcept { return static_cast<double>(asin(x)); }
double Erfc(double x) noexcept { return static_cast<double>(erfc(x)); }
double LogGamma(double x) noexcept { return static_cast<double>(lgamma(x)); }

}  // namespace arithmetic
