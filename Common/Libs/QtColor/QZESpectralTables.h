#ifndef QZESPECTRALTABLES_H
#define QZESPECTRALTABLES_H

/// Reference spectra built into the library as constant single-precision
/// tables. The build generates their definitions from the CSV files in data/
/// (sources and licences in data/README.md), so nothing is read at run time.
/// Wavelengths (the *_lambda tables) are in nanometres.

/// CIE 1931 2-degree standard observer: 360..830 nm in 1 nm steps.
constexpr int CIE1931cmf_count = 471;
extern const float CIE1931cmf_lambda[CIE1931cmf_count];
extern const float CIE1931cmf_X[CIE1931cmf_count];
extern const float CIE1931cmf_Y[CIE1931cmf_count];
extern const float CIE1931cmf_Z[CIE1931cmf_count];

/// CIE 2006 2-degree XYZ colour matching functions (from the cone
/// fundamentals): 390..830 nm in 1 nm steps.
constexpr int CIE2006cmf_count = 441;
extern const float CIE2006cmf_lambda[CIE2006cmf_count];
extern const float CIE2006cmf_X[CIE2006cmf_count];
extern const float CIE2006cmf_Y[CIE2006cmf_count];
extern const float CIE2006cmf_Z[CIE2006cmf_count];

/// CIE illuminants A and D65 (100 at 560 nm) and the equal-energy
/// illuminant E (1 everywhere): 300..830 nm in 5 nm steps.
constexpr int CIEilluminant_count = 107;
extern const float CIEilluminant_lambda[CIEilluminant_count];
extern const float CIEilluminant_A[CIEilluminant_count];
extern const float CIEilluminant_D65[CIEilluminant_count];
extern const float CIEilluminant_E[CIEilluminant_count];

/// CIE daylight components: a D-series illuminant is S0 + M1 S1 + M2 S2.
/// 300..830 nm in 5 nm steps.
constexpr int CIEdaylight_count = 107;
extern const float CIEdaylight_lambda[CIEdaylight_count];
extern const float CIEdaylight_S0[CIEdaylight_count];
extern const float CIEdaylight_S1[CIEdaylight_count];
extern const float CIEdaylight_S2[CIEdaylight_count];

/// Basis spectra of Smits' RGB-to-spectrum method, sampled at 32 wavelengths
/// evenly spaced from 380 to 720 nm. Small negative entries belong to the data.
constexpr int RGB2Spec_count = 32;
extern const float RGB2Spec_lambda[RGB2Spec_count];

/// Reflectance bases.
extern const float RGB2ReflSpec_White[RGB2Spec_count];
extern const float RGB2ReflSpec_Cyan[RGB2Spec_count];
extern const float RGB2ReflSpec_Magenta[RGB2Spec_count];
extern const float RGB2ReflSpec_Yellow[RGB2Spec_count];
extern const float RGB2ReflSpec_Red[RGB2Spec_count];
extern const float RGB2ReflSpec_Green[RGB2Spec_count];
extern const float RGB2ReflSpec_Blue[RGB2Spec_count];

/// Illuminant bases.
extern const float RGB2IlluSpec_White[RGB2Spec_count];
extern const float RGB2IlluSpec_Cyan[RGB2Spec_count];
extern const float RGB2IlluSpec_Magenta[RGB2Spec_count];
extern const float RGB2IlluSpec_Yellow[RGB2Spec_count];
extern const float RGB2IlluSpec_Red[RGB2Spec_count];
extern const float RGB2IlluSpec_Green[RGB2Spec_count];
extern const float RGB2IlluSpec_Blue[RGB2Spec_count];

#endif // QZESPECTRALTABLES_H
