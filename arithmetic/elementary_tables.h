#pragma once

// Written by tables.py.

#include <array>
#include <cstddef>

namespace arithmetic::functions {

struct TwoDoubles {
  double high;
  double low;
};

inline constexpr int kPowerBits = 5;
inline constexpr int kPowers = 1 << kPowerBits;
inline constexpr int kLogarithmBits = 6;
inline constexpr int kLogarithmSteps = 1 << kLogarithmBits;
inline constexpr int kFirstLogarithm = 45;
inline constexpr double kLogarithmTop = 90 / 64.0;
inline constexpr double kStepsInOne = 0x1.71547652b82fep+5;  // 32 / ln(2)
// Shortened: the first part times a whole number of 20 binary digits is exact.
inline constexpr TwoDoubles kStep = {0x1.62e42fefa3a00p-6, -0x1.0ca86c3898d00p-54};
inline constexpr TwoDoubles kLogarithmOfTwo = {0x1.62e42fefa3a00p-1, -0x1.0ca86c3898d00p-49};
// 2^(k / 32).
inline constexpr std::array<TwoDoubles, kPowers> kPower = {
    {{0x1.0000000000000p+0, 0x0.0p+0},
     {0x1.059b0d3158574p+0, 0x1.d73e2a475b465p-55},
     {0x1.0b5586cf9890fp+0, 0x1.8a62e4adc610bp-54},
     {0x1.11301d0125b51p+0, -0x1.6c51039449b3ap-54},
     {0x1.172b83c7d517bp+0, -0x1.19041b9d78a76p-55},
     {0x1.1d4873168b9aap+0, 0x1.e016e00a2643cp-54},
     {0x1.2387a6e756238p+0, 0x1.9b07eb6c70573p-54},
     {0x1.29e9df51fdee1p+0, 0x1.612e8afad1255p-55},
     {0x1.306fe0a31b715p+0, 0x1.6f46ad23182e4p-55},
     {0x1.371a7373aa9cbp+0, -0x1.63aeabf42eae2p-54},
     {0x1.3dea64c123422p+0, 0x1.ada0911f09ebcp-55},
     {0x1.44e086061892dp+0, 0x1.89b7a04ef80d0p-59},
     {0x1.4bfdad5362a27p+0, 0x1.d4397afec42e2p-56},
     {0x1.5342b569d4f82p+0, -0x1.07abe1db13cadp-55},
     {0x1.5ab07dd485429p+0, 0x1.6324c054647adp-54},
     {0x1.6247eb03a5585p+0, -0x1.383c17e40b497p-54},
     {0x1.6a09e667f3bcdp+0, -0x1.bdd3413b26456p-54},
     {0x1.71f75e8ec5f74p+0, -0x1.16e4786887a99p-55},
     {0x1.7a11473eb0187p+0, -0x1.41577ee04992fp-55},
     {0x1.82589994cce13p+0, -0x1.d4c1dd41532d8p-54},
     {0x1.8ace5422aa0dbp+0, 0x1.6e9f156864b27p-54},
     {0x1.93737b0cdc5e5p+0, -0x1.75fc781b57ebcp-57},
     {0x1.9c49182a3f090p+0, 0x1.c7c46b071f2bep-56},
     {0x1.a5503b23e255dp+0, -0x1.d2f6edb8d41e1p-54},
     {0x1.ae89f995ad3adp+0, 0x1.7a1cd345dcc81p-54},
     {0x1.b7f76f2fb5e47p+0, -0x1.5584f7e54ac3bp-56},
     {0x1.c199bdd85529cp+0, 0x1.11065895048ddp-55},
     {0x1.cb720dcef9069p+0, 0x1.503cbd1e949dbp-56},
     {0x1.d5818dcfba487p+0, 0x1.2ed02d75b3707p-55},
     {0x1.dfc97337b9b5fp+0, -0x1.1a5cd4f184b5cp-54},
     {0x1.ea4afa2a490dap+0, -0x1.e9c23179c2893p-54},
     {0x1.f50765b6e4540p+0, 0x1.9d3e12dd8a18bp-54}}};
// ln(k / 64) from 45 on, shortened alike.
inline constexpr std::array<TwoDoubles, 46> kLogarithm = {
    {{-0x1.68ac83e9c6c00p-2, 0x1.ebe59b15228c0p-46},
     {-0x1.522ae0738a400p-2, 0x1.418f7e9b38a69p-49},
     {-0x1.3c25277333000p-2, -0x1.83b54b606bd5cp-46},
     {-0x1.269621134dc00p-2, 0x1.b61f105226250p-48},
     {-0x1.1178e8227e400p-2, -0x1.ef78ce2d07f1dp-48},
     {-0x1.f991c6cb3b000p-3, -0x1.bcbecca0cdf30p-46},
     {-0x1.d1037f2656000p-3, 0x1.84a7e75b6f6e4p-47},
     {-0x1.a93ed3c8ad800p-3, -0x1.e36f2bea77a5dp-47},
     {-0x1.823c16551a000p-3, -0x1.e0ddb9a631e83p-46},
     {-0x1.5bf406b544000p-3, 0x1.27023eb68981cp-46},
     {-0x1.365fcb0159000p-3, -0x1.62fa8234b7289p-51},
     {-0x1.1178e8227e800p-3, 0x1.c210e63a5f01cp-46},
     {-0x1.da72763844000p-4, -0x1.a89401fa71733p-46},
     {-0x1.9335e5d595000p-4, 0x1.9dd478a85704dp-46},
     {-0x1.4d3115d208000p-4, 0x1.53a2582f4e1efp-48},
     {-0x1.08598b59e4000p-4, 0x1.7e5dd7009902cp-46},
     {-0x1.894aa149fc000p-5, 0x1.97995d05a267dp-46},
     {-0x1.0415d89e74000p-5, -0x1.111c05cf1d753p-47},
     {-0x1.0205658934000p-6, -0x1.84749f23a105cp-46},
     {0x0.0p+0, 0x0.0p+0},
     {0x1.fc0a8b0fc0000p-7, 0x1.f1e7cf6d3a69cp-50},
     {0x1.f829b0e784000p-6, -0x1.9ff660e07d871p-47},
     {0x1.77458f632e000p-5, -0x1.81dce586af08ep-48},
     {0x1.f0a30c0116000p-5, 0x1.5330be64b8b77p-48},
     {0x1.341d7961bd000p-4, 0x1.d092998376105p-48},
     {0x1.6f0d28ae57000p-4, -0x1.2d1906d99184cp-46},
     {0x1.a926d3a4ad000p-4, 0x1.58d942f48aa71p-46},
     {0x1.e27076e2af000p-4, 0x1.72f4f543fff10p-47},
     {0x1.0d77e7cd09000p-3, -0x1.a699688e85bf4p-47},
     {0x1.29552f81ff800p-3, -0x1.6e59fd11c77f0p-46},
     {0x1.44d2b6ccb8000p-3, -0x1.70cc16135783cp-46},
     {0x1.5ff3070a79000p-3, 0x1.e9e439f105039p-46},
     {0x1.7ab890210d800p-3, 0x1.091be36b2d6a0p-47},
     {0x1.9525a9cf45800p-3, -0x1.4b89becf8ac74p-47},
     {0x1.af3c94e80c000p-3, -0x1.a4e633fcd9066p-52},
     {0x1.c8ff7c79a9800p-3, 0x1.10d612ec0f798p-46},
     {0x1.e27076e2af000p-3, 0x1.72f4f543fff10p-46},
     {0x1.fb9186d5e4000p-3, -0x1.d572aab993c87p-47},
     {0x1.0a324e2739000p-2, 0x1.c6bee7ef4030ep-47},
     {0x1.1675cababa800p-2, -0x1.f1fc63382a8f0p-46},
     {0x1.22941fbcf7800p-2, 0x1.65a242853da76p-46},
     {0x1.2e8e2bae11c00p-2, 0x1.309c2cc91a851p-46},
     {0x1.3a64c55694400p-2, 0x1.e9c72f35cd741p-46},
     {0x1.4618bc21c6000p-2, -0x1.3d82f484c84ccp-46},
     {0x1.51aad872df800p-2, 0x1.684e49eb067d5p-49},
     {0x1.5d1bdbf580800p-2, 0x1.ca508d8e0f720p-46}}};

}  // namespace arithmetic::functions
