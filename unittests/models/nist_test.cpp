#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "unittests/WithHost.h"
#include "unittests/support.h"
#include "zelkova/frame/NoValue.h"
#include "zelkova/models/yRegression.h"

namespace zelkova {
namespace {

// NIST's Statistical Reference Datasets, linear regression: data and certified values. The data typed here
// were checked against the certified values in 120-digit arithmetic (mpmath): all agree to 14 digits or more.

// Pairs of y and x; the loads of `pontius` are 150000 to 3000000, twice; rows of y and x1 to x6.
const std::vector<double> norris{
    0.1,   0.2,   338.8, 337.4, 118.1, 118.2, 888,   884.6, 9.2,   10.1,  228.1, 226.5, 668.5, 666.3, 998.5,
    996.3, 449.1, 448.6, 778.9, 777,   559.2, 558.2, 0.3,   0.4,   0.1,   0.6,   778.1, 775.5, 668.8, 666.9,
    339.3, 338,   448.9, 447.5, 10.8,  11.6,  557.7, 556,   228.3, 228.1, 998,   995.8, 888.8, 887.6, 119.6,
    120.2, 0.3,   0.3,   0.6,   0.3,   557.6, 556.8, 339.3, 339.1, 888,   887.2, 998.5, 999,   778.9, 779,
    10.2,  11.1,  117.6, 118.3, 228.9, 229.2, 668.4, 669.1, 449.2, 448.9, 0.2,   0.5};
const std::vector<double> pontius{0.11019, 0.21956, 0.32949, 0.43899, 0.54803, 0.65694, 0.76562, 0.87487,
                                  0.98292, 1.09146, 1.20001, 1.30822, 1.41599, 1.52399, 1.63194, 1.73947,
                                  1.84646, 1.95392, 2.06128, 2.16844, 0.11052, 0.22018, 0.32939, 0.43886,
                                  0.54798, 0.65739, 0.76596, 0.87474, 0.983,   1.0915,  1.20004, 1.30818,
                                  1.41613, 1.52408, 1.63159, 1.73965, 1.84696, 1.95445, 2.06177, 2.16829};
const std::vector<double> filip{
    0.8116, -6.860120914, 0.9072, -4.324130045, 0.9052, -4.358625055, 0.9039, -4.358426747,
    0.8053, -6.955852379, 0.8377, -6.661145254, 0.8667, -6.355462942, 0.8809, -6.118102026,
    0.7975, -7.115148017, 0.8162, -6.815308569, 0.8515, -6.519993057, 0.8766, -6.204119983,
    0.8885, -5.853871964, 0.8859, -6.109523091, 0.8959, -5.79832982,  0.8913, -5.482672118,
    0.8959, -5.171791386, 0.8971, -4.851705903, 0.9021, -4.517126416, 0.909,  -4.143573228,
    0.9139, -3.709075441, 0.9199, -3.499489089, 0.8692, -6.300769497, 0.8872, -5.953504836,
    0.89,   -5.642065153, 0.891,  -5.031376979, 0.8977, -4.680685696, 0.9035, -4.329846955,
    0.9078, -3.928486195, 0.7675, -8.56735134,  0.7705, -8.363211311, 0.7713, -8.107682739,
    0.7736, -7.823908741, 0.7775, -7.522878745, 0.7841, -7.218819279, 0.7971, -6.920818754,
    0.8329, -6.628932138, 0.8641, -6.323946875, 0.8804, -5.991399828, 0.7668, -8.781464495,
    0.7633, -8.663140179, 0.7678, -8.473531488, 0.7697, -8.247337057, 0.77,   -7.971428747,
    0.7749, -7.676129393, 0.7796, -7.352812702, 0.7897, -7.072065318, 0.8131, -6.774174009,
    0.8498, -6.478861916, 0.8741, -6.159517513, 0.8061, -6.835647144, 0.846,  -6.53165267,
    0.8751, -6.224098421, 0.8856, -5.910094889, 0.8919, -5.598599459, 0.8934, -5.290645224,
    0.894,  -4.974284616, 0.8957, -4.64454848,  0.9047, -4.290560426, 0.9129, -3.885055584,
    0.9209, -3.408378962, 0.9219, -3.13200249,  0.7739, -8.726767166, 0.7681, -8.66695597,
    0.7665, -8.511026475, 0.7703, -8.165388579, 0.7702, -7.886056648, 0.7761, -7.588043762,
    0.7809, -7.283412422, 0.7961, -6.995678626, 0.8253, -6.691862621, 0.8602, -6.392544977,
    0.8809, -6.067374056, 0.8301, -6.684029655, 0.8664, -6.378719832, 0.8834, -6.065855188,
    0.8898, -5.752272167, 0.8964, -5.132414673, 0.8963, -4.811352704, 0.9074, -4.098269308,
    0.9119, -3.66174277,  0.9228, -3.2644011};
const std::vector<double> longley{
    60323, 83,    234289, 2356, 1590, 107608, 1947, 61122, 88.5,  259426, 2325, 1456, 108632, 1948,
    60171, 88.2,  258054, 3682, 1616, 109773, 1949, 61187, 89.5,  284599, 3351, 1650, 110929, 1950,
    63221, 96.2,  328975, 2099, 3099, 112075, 1951, 63639, 98.1,  346999, 1932, 3594, 113270, 1952,
    64989, 99,    365385, 1870, 3547, 115094, 1953, 63761, 100,   363112, 3578, 3350, 116219, 1954,
    66019, 101.2, 397469, 2904, 3048, 117388, 1955, 67857, 104.6, 419180, 2822, 2857, 118734, 1956,
    68169, 108.4, 442769, 2936, 2798, 120445, 1957, 66513, 110.8, 444546, 4681, 2637, 121950, 1958,
    68655, 112.6, 482704, 3813, 2552, 123366, 1959, 69564, 114.2, 502601, 3931, 2514, 125368, 1960,
    69331, 115.7, 518173, 4806, 2572, 127852, 1961, 70551, 116.9, 554894, 4007, 2827, 130081, 1962};

/// Rows of y and of the powers 0 to `degree` of x, from pairs y, x.
DoubleArray powersOf(const std::vector<double>& pairs, Index degree) {
  DoubleArray table(static_cast<Index>(pairs.size()) / 2, degree + 2, 1.0);
  for (Index i = 1; i <= table.rows(); ++i) {
    const auto place = static_cast<std::size_t>(2 * i - 2);
    table(i, 1) = pairs[place];
    for (Index j = 3; j <= table.columns(); ++j) table(i, j) = std::pow(pairs[place + 1], j - 2.0);
  }
  return table;
}

/// x is 0 to 20; y is the sum of the powers 0 to 5 of `scale` x, and `disturbance` times NIST's pattern.
DoubleArray wampler(double scale, double disturbance) {
  const std::vector<double> pattern{759,   -2048, 2048,  -2048, 2523,  -2048, 2048,
                                    -2048, 1838,  -2048, 2048,  -2048, 1838,  -2048,
                                    2048,  -2048, 2523,  -2048, 2048,  -2048, 759};
  std::vector<double> pairs;
  for (int x = 0; x <= 20; ++x) {
    double y = disturbance * pattern[static_cast<std::size_t>(x)];
    // In whole hundred thousandths, so that the decimals are those that NIST prints.
    double units = 0;
    for (int k = 0; k <= 5; ++k) units += std::pow(x, k) * std::round(1e5 * std::pow(scale, k));
    pairs.push_back(y + units / 1e5);
    pairs.push_back(x);
  }
  return powersOf(pairs, 5);
}

DoubleArray withoutPowers(const std::vector<double>& values, Index columns) {
  DoubleArray table(static_cast<Index>(values.size()) / columns, columns, 0.0);
  for (Index i = 1; i <= table.rows(); ++i) {
    for (Index j = 1; j <= columns; ++j) {
      table(i, j) = values[static_cast<std::size_t>((i - 1) * columns + j - 1)];
    }
  }
  return table;
}

struct CertifiedSet {
  std::string name;
  DoubleArray data;  ///< y, then the columns of the model
  bool intercept;
  double digits;  ///< that coefficients, errors, SSE and F must have
  std::vector<double> b, se;
  double ssr, sse, F, rSquared;
};

std::vector<CertifiedSet> certifiedSets() {
  std::vector<double> pontiusPairs;
  for (std::size_t i = 0; i < pontius.size(); ++i) {
    pontiusPairs.push_back(pontius[i]);
    pontiusPairs.push_back(150000.0 * static_cast<double>(i % 20 + 1));
  }
  DoubleArray longleyTable(16, 8, 1.0);
  for (Index i = 1; i <= 16; ++i) {
    for (Index j = 1; j <= 7; ++j) {
      longleyTable(i, j == 1 ? 1 : j + 1) = longley[static_cast<std::size_t>((i - 1) * 7 + j - 1)];
    }
  }
  std::vector<double> noInt1;
  for (int i = 0; i <= 10; ++i) noInt1.insert(noInt1.end(), {130.0 + i, 60.0 + i});
  const std::vector<double> ones(6, 1.0);
  const auto wamplerErrors = [](double disturbance) {
    std::vector<double> errors{2152.32624678170, 2363.55173469681, 779.343524331583,
                               101.475507550350, 5.64566512170752, 0.112324854679312};
    for (double& se : errors) se *= disturbance;
    return errors;
  };
  return {{"Norris",
           powersOf(norris, 1),
           true,
           12,
           {-0.262323073774029, 1.00211681802045},
           {0.232818234301152, 0.429796848199937E-03},
           4255954.13232369,
           26.6173985294224,
           5436385.54079785,
           0.999993745883712},
          {"Pontius",
           powersOf(pontiusPairs, 2),
           true,
           12,
           {0.673565789473684E-03, 0.732059160401003E-06, -0.316081871345029E-14},
           {0.107938612033077E-03, 0.157817399981659E-09, 0.486652849992036E-16},
           15.6040343244198,
           0.155761768796992E-05,
           185330865.995752,
           0.999999900178537},
          {"NoInt1",
           withoutPowers(noInt1, 2),
           false,
           13,
           {2.07438016528926},
           {0.165289256198347E-01},
           200457.727272727,
           127.272727272727,
           15750.25,
           0.999365492298663},
          {"NoInt2",
           DoubleArray::table({{3, 4}, {4, 5}, {4, 6}}),
           false,
           13,
           {0.727272727272727},
           {0.420827318078432E-01},
           40.7272727272727,
           0.272727272727273,
           298.6666666666667,
           0.993348115299335},
          {"Filip",
           powersOf(filip, 10),
           true,
           7,
           {-1467.48961422980, -2772.17959193342, -2316.37108160893, -1127.97394098372, -354.478233703349,
            -75.1242017393757, -10.8753180355343, -1.06221498588947, -0.670191154593408E-01,
            -0.246781078275479E-02, -0.402962525080404E-04},
           {298.084530995537, 559.779865474950, 466.477572127796, 227.204274477751, 71.6478660875927,
            15.2897178747400, 2.23691159816033, 0.221624321934227, 0.142363763154724E-01,
            0.535617408889821E-03, 0.896632837373868E-05},
           0.242391619837339,
           0.795851382172941E-03,
           2162.43954511489,
           0.996727416185620},
          {"Longley",
           longleyTable,
           true,
           13,
           {-3482258.63459582, 15.0618722713733, -0.358191792925910E-01, -2.02022980381683, -1.03322686717359,
            -0.511041056535807E-01, 1829.15146461355},
           {890420.383607373, 84.9149257747669, 0.334910077722432E-01, 0.488399681651699, 0.214274163161675,
            0.226073200069370, 455.478499142212},
           184172401.944494,
           836424.055505915,
           330.285339234588,
           0.995479004577296},
          {"Wampler3", wampler(1, 1), true, 13, ones, wamplerErrors(1), 18814317208116.7, 83554268,
           675524.458240122, 0.999995559025820},
          {"Wampler4", wampler(1, 100), true, 13, ones, wamplerErrors(100), 18814317208116.7, 835542680000,
           67.5524458240122, 0.957478440825662},
          {"Wampler5", wampler(1, 10000), true, 13, ones, wamplerErrors(10000), 18814317208116.7,
           8355426800000000, 0.00675524458240122, 0.00224668921574940}};
}

class NistSets : public WithHost {
 protected:
  /// Fits the set's rows, all of them `copies` times.
  void fit(const CertifiedSet& set, Index copies = 1) {
    const Index n = set.data.rows();
    DoubleArray Y(n * copies, 1, 0.0);
    DoubleArray X(n * copies, set.data.columns() - 1, 0.0);
    for (Index i = 1; i <= n * copies; ++i) {
      Y(i, 1) = set.data((i - 1) % n + 1, 1);
      for (Index j = 1; j <= X.columns(); ++j) X(i, j) = set.data((i - 1) % n + 1, j + 1);
    }
    DoubleArray t, p, fitted;
    yRegression().RegOutput(Y, X, coef, se, t, p, fitted, residual, main, set.intercept, true);
  }

  DoubleArray coef, se, residual, main;
};

// Faults: products, coefficients or sums of squares in plain precision, which leave Longley's set 7 digits.
TEST_F(NistSets, AreMetToTheDigitsTold) {
  for (const CertifiedSet& set : certifiedSets()) {
    SCOPED_TRACE(set.name);
    const double tolerance = std::pow(10, -set.digits);
    fit(set);
    ASSERT_EQ(coef.size(), static_cast<Index>(set.b.size()));
    for (std::size_t j = 0; j < set.b.size(); ++j) {
      EXPECT_TRUE(isClose(coef(static_cast<Index>(j + 1)), set.b[j], tolerance));
      EXPECT_TRUE(isClose(se(static_cast<Index>(j + 1)), set.se[j], tolerance));
    }
    EXPECT_TRUE(isClose(main(Reg::SSR), set.ssr, tolerance));
    EXPECT_TRUE(isClose(main(Reg::SSE), set.sse, tolerance));
    EXPECT_TRUE(isClose(main(Reg::F), set.F, tolerance));
    EXPECT_TRUE(isClose(main(Reg::S), std::sqrt(main(Reg::MSE))));
    EXPECT_TRUE(isClose(main(Reg::RSquared), set.rSquared, tolerance));
  }
}

// Fault: a block of rows cut or added wrongly. Every row m times over leaves the coefficients and multiplies
// the sums of squares by m.
TEST_F(NistSets, AreMetByLongDataToo) {
  constexpr Index copies = 100;
  for (const CertifiedSet& set : certifiedSets()) {
    SCOPED_TRACE(set.name);
    const double tolerance = std::pow(10, -set.digits);
    fit(set, copies);
    for (std::size_t j = 0; j < set.b.size(); ++j) {
      EXPECT_TRUE(isClose(coef(static_cast<Index>(j + 1)), set.b[j], tolerance));
    }
    EXPECT_TRUE(isClose(main(Reg::SSR), copies * set.ssr, tolerance));
    EXPECT_TRUE(isClose(main(Reg::SSE), copies * set.sse, tolerance));
  }
}

// Faults: an SSE of rounding alone that passes for error, and coefficients that lose digits. Certified: both
// polynomials are exact.
TEST_F(NistSets, WamplersFirstTwoAreExactFits) {
  for (const double scale : {1.0, 0.1}) {
    fit({"", wampler(scale, 0), true, 0, {}, {}, 0, 0, 0, 0});
    for (Index j = 1; j <= 6; ++j) {
      EXPECT_TRUE(isClose(coef(j), std::pow(scale, j - 1.0), 1e-12));
      EXPECT_EQ(se(j), NoValue);
    }
    EXPECT_TRUE(isClose(main(Reg::SSR), scale == 1 ? 18814317208116.7 : 6602.91858365167, 1e-13));
    EXPECT_LT(main(Reg::SSE), 1e-8);
    EXPECT_TRUE(isClose(main(Reg::MSR), main(Reg::SSR) / 5));
    for (const auto slot : {Reg::MSE, Reg::F, Reg::PValue, Reg::S, Reg::RSquared, Reg::AdjustedRSquared}) {
      EXPECT_EQ(main(slot), NoValue);
    }
  }
}

}  // namespace
}  // namespace zelkova
