#include <algorithm>
#include <functional>
#include <utility>

#include "zelkova/frame/arithmetic.h"
#include "zelkova/models/LeastSquares.h"
#include "zelkova/models/yRegression.h"

namespace zelkova {

namespace {

bool isConstant(Column column) {
  return std::all_of(column.begin(), column.end(), [&](double x) { return x == column.front(); });
}

/// The columns at these places, counted from 0, as a table.
DoubleArray tableOf(const std::vector<Column>& columns, const std::vector<std::size_t>& places) {
  if (places.empty()) return {};
  DoubleArray table(static_cast<Index>(columns.front().size()), static_cast<Index>(places.size()), 0.0);
  Index j = 0;
  for (const std::size_t place : places) {
    std::copy(columns[place].begin(), columns[place].end(), table.column(++j).begin());
  }
  return table;
}

StringArray namesAt(const StringArray& names, const std::vector<std::size_t>& places) {
  std::vector<std::string> kept(places.size());
  std::transform(places.begin(), places.end(), kept.begin(),
                 [&](std::size_t place) { return names(static_cast<Index>(place + 1)); });
  return StringArray(std::move(kept));
}

/// Of the columns at `candidates`, the places of those that the ones before do not explain.
std::vector<std::size_t> notCollinear(const std::vector<Column>& X,
                                      const std::vector<std::size_t>& candidates, std::size_t fixed) {
  if (candidates.empty()) return {};
  std::vector<Column> columns;
  std::vector<double> limits;
  for (const std::size_t place : candidates) {
    columns.push_back(X[place]);
    // deliberate: a limit in proportion to the sum of the column, not of its squares.
    limits.push_back(extendedSum(X[place]).rounded() * 1E-18);
  }
  std::vector<std::size_t> places;
  for (const std::size_t k : independentPlaces(CrossProducts(columns), limits, fixed)) {
    places.push_back(candidates[k]);
  }
  return places;
}

}  // namespace

void yRegression::RegressionCheck(DoubleArray& M_X, StringArray& M_Xname, bool FitIntercept) const {
  const std::vector<Column> X = columnsOf(M_X);
  if (M_Xname.vector().size() != X.size()) {
    raise(FailureNumber::OutOfRange, "M_Xname must have a name for each column of M_X");
  }
  const std::size_t fixed = FitIntercept ? 1 : 0;
  std::vector<std::size_t> varying;
  for (std::size_t j = 0; j < X.size(); ++j) {
    if (j < fixed || !isConstant(X[j])) varying.push_back(j);
  }
  const std::vector<std::size_t> kept = notCollinear(X, varying, fixed);
  StringArray names = namesAt(M_Xname, kept);
  M_X = tableOf(X, kept);
  M_Xname = std::move(names);
}

void yRegression::GetNonLinear(const DoubleArray& dataarrayX, const std::string& XName,
                               const std::string& modeltype, DoubleArray& dx, StringArray& dxN) const {
  const Column x = onlyColumnOf(dataarrayX, "dataarrayX");
  const Index highest = modeltype == "Cubic" ? 3 : modeltype == "Quadratic" ? 2 : 1;
  DoubleArray powers(static_cast<Index>(x.size()), highest + 1, 1.0);
  std::vector<std::string> names{"Constant"};
  for (Index power = 1; power <= highest; ++power) {
    const std::span<const double> lower = powers.column(power);
    std::transform(x.begin(), x.end(), lower.begin(), powers.column(power + 1).begin(), std::multiplies<>());
    names.push_back(power == 1 ? XName : XName + "^" + std::to_string(power));
  }
  checked::leaving(powers);
  dx = std::move(powers);
  dxN = StringArray(std::move(names));
}

}  // namespace zelkova
