#include "zelkova/models/CodedDesign.h"

#include <algorithm>
#include <functional>

#include "zelkova/kit/SortedLevels.h"
#include "zelkova/kit/order.h"

namespace zelkova::glm {

namespace {

/// Pairs of numbers that occur together, numbered from 0 in ascending order of the first and then the second.
struct Pairs {
  std::vector<std::pair<Index, Index>> members;
  std::vector<Index> codes;
};

Pairs pairsOf(const std::vector<Index>& first, const std::vector<Index>& second, Index secondCount) {
  std::vector<order::Row> rows(first.size());
  for (std::size_t i = 0; i < rows.size(); ++i) {
    rows[i] = {static_cast<order::Key>(first[i] * secondCount + second[i]), static_cast<Index>(i)};
  }
  order::stableSort(rows);
  Pairs pairs;
  pairs.codes.resize(rows.size());
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (i == 0 || rows[i].key != rows[i - 1].key) {
      const auto key = static_cast<Index>(rows[i].key);
      pairs.members.emplace_back(key / secondCount, key % secondCount);
    }
    pairs.codes[static_cast<std::size_t>(rows[i].place)] = static_cast<Index>(pairs.members.size()) - 1;
  }
  return pairs;
}

const Factor& factorOf(const Variable& variable, const std::vector<Factor>& factors) {
  return factors[static_cast<std::size_t>(variable.column - 1)];
}

/// Adds up numbers of columns, for as long as they fit.
class ColumnBudget {
 public:
  explicit ColumnBudget(Index rows) : left_(rows - 1) {}

  void take(Index columns) {
    if (columns > left_) refuse("Insufficient data points");
    left_ -= columns;
  }

  /// The product of the codings of the parts, refused as soon as it is too large.
  void take(const Term& term, const std::vector<Factor>& factors) {
    Index columns = 1;
    for (const Variable& part : term.parts) {
      if (part.type != NameType::Factor) continue;
      const Index coded = factorOf(part, factors).levels.rows() - 1;
      if (columns > left_ / coded) refuse("Insufficient data points");
      columns *= coded;
    }
    take(columns);
  }

 private:
  Index left_;
};

/// Effect coding of one more factor inside the columns there are: each is split in as many as the factor has
/// levels but the last, which counts against all of them.
std::vector<CodedTerm::Column> crossed(const std::vector<CodedTerm::Column>& columns, const Factor& factor,
                                       const std::string& name) {
  const Index levels = factor.levels.rows();
  std::vector<CodedTerm::Column> result;
  for (const CodedTerm::Column& column : columns) {
    for (Index level = 0; level + 1 < levels; ++level) {
      CodedTerm::Column next;
      next.label = column.label + (column.label.empty() ? "" : "*") + name + "|" + factor.levels(level + 1);
      for (const auto& [group, sign] : column.coding) {
        next.coding.emplace_back(group * levels + level, sign);
        next.coding.emplace_back(group * levels + levels - 1, -sign);
      }
      result.push_back(std::move(next));
    }
  }
  return result;
}

void multiply(std::vector<double>& product, std::span<const double> column) {
  if (product.empty()) {
    product.assign(column.begin(), column.end());
    return;
  }
  std::transform(product.begin(), product.end(), column.begin(), product.begin(), std::multiplies<>());
}

CodedTerm crossedTerm(const Term& term, const std::vector<Factor>& factors, const DoubleArray& dc) {
  CodedTerm coded;
  coded.columns = {{"", {{0, 1.0}}}};
  for (std::size_t k = 0; k < term.parts.size(); ++k) {
    const Variable& part = term.parts[k];
    const std::string& name = term.names[k];
    if (part.type == NameType::Covariate) {
      for (CodedTerm::Column& column : coded.columns)
        column.label += (column.label.empty() ? "" : "*") + name;
      multiply(coded.factor, dc.column(part.column));
      continue;
    }
    const Factor& factor = factorOf(part, factors);
    coded.columns = crossed(coded.columns, factor, name);
    coded.groupCount *= factor.levels.rows();
    if (coded.groups.empty()) {
      coded.groups = factor.codes;
      continue;
    }
    for (std::size_t i = 0; i < coded.groups.size(); ++i) {
      coded.groups[i] = coded.groups[i] * factor.levels.rows() + factor.codes[i];
    }
  }
  if (coded.factor.empty()) {
    std::vector<bool> occurs(static_cast<std::size_t>(coded.groupCount), false);
    for (const Index group : coded.groups) occurs[static_cast<std::size_t>(group)] = true;
    coded.units = static_cast<double>(std::count(occurs.begin(), occurs.end(), true));
  }
  return coded;
}

/// The combinations of levels of the enclosing factors that occur, the first factor's changing slowest, and
/// their texts: "a1", or "a1,c2" for several.
struct Enclosing {
  std::vector<std::string> texts;
  std::vector<Index> codes;
};

Enclosing enclosingOf(const Term& term, const std::vector<Factor>& factors) {
  const Factor& outermost = factorOf(term.parts[1], factors);
  Enclosing enclosing{{outermost.levels.elements().begin(), outermost.levels.elements().end()},
                      outermost.codes};
  for (std::size_t k = 2; k < term.parts.size(); ++k) {
    const Factor& factor = factorOf(term.parts[k], factors);
    Pairs pairs = pairsOf(enclosing.codes, factor.codes, factor.levels.rows());
    std::vector<std::string> texts;
    for (const auto& [outer, level] : pairs.members) {
      texts.push_back(enclosing.texts[static_cast<std::size_t>(outer)] + "," + factor.levels(level + 1));
    }
    enclosing = {std::move(texts), std::move(pairs.codes)};
  }
  return enclosing;
}

CodedTerm nestedTerm(const Term& term, const std::vector<Factor>& factors) {
  const Factor& inner = factorOf(term.parts.front(), factors);
  const Enclosing enclosing = enclosingOf(term, factors);
  Pairs pairs = pairsOf(enclosing.codes, inner.codes, inner.levels.rows());

  CodedTerm coded;
  coded.groupCount = static_cast<Index>(pairs.members.size());
  coded.units = static_cast<double>(coded.groupCount);
  for (Index first = 0, next = 0; first < coded.groupCount; first = next) {
    const Index outer = pairs.members[static_cast<std::size_t>(first)].first;
    while (next < coded.groupCount && pairs.members[static_cast<std::size_t>(next)].first == outer) ++next;
    for (Index group = first; group + 1 < next; ++group) {
      const Index level = pairs.members[static_cast<std::size_t>(group)].second;
      coded.columns.push_back({term.reported + "|" + inner.levels(level + 1) + "(" +
                                   enclosing.texts[static_cast<std::size_t>(outer)] + ")",
                               {{group, 1.0}, {next - 1, -1.0}}});
    }
  }
  coded.groups = std::move(pairs.codes);
  return coded;
}

/// A table of extended sums, row by row.
struct Sums {
  Sums(Index rows, Index columns)
      : columnCount(static_cast<std::size_t>(columns)),
        elements(static_cast<std::size_t>(rows) * columnCount) {}

  DoubleDouble& operator()(Index i, Index j) {
    return elements[static_cast<std::size_t>(i) * columnCount + static_cast<std::size_t>(j)];
  }

  std::size_t columnCount;
  std::vector<DoubleDouble> elements;
};

/// For each pair of a group of `a` and a group of `b`, the sum over the rows they share of what both columns
/// have in common there.
Sums groupSums(const CodedTerm& a, const CodedTerm& b, Index rows) {
  Sums sums(a.groupCount, b.groupCount);
  const bool counts = a.factor.empty() && b.factor.empty();
  for (std::size_t i = 0; i < static_cast<std::size_t>(rows); ++i) {
    DoubleDouble& sum = sums(a.groupOf(i), b.groupOf(i));
    if (counts) {
      sum.high += 1;
    } else {
      sum = sum + twoProduct(a.factorOf(i), b.factorOf(i));
    }
  }
  return sums;
}

/// The inner products of the columns of `a` with those of `b`.
Sums codedProducts(const CodedTerm& a, const CodedTerm& b, Index rows) {
  Sums sums = groupSums(a, b, rows);
  const auto add = [](DoubleDouble& sum, DoubleDouble x, double sign) { sum = sum + (sign < 0 ? -x : x); };
  Sums products(static_cast<Index>(a.columns.size()), static_cast<Index>(b.columns.size()));
  std::vector<DoubleDouble> row(static_cast<std::size_t>(b.groupCount));
  Index i = 0;
  for (const CodedTerm::Column& column : a.columns) {
    std::fill(row.begin(), row.end(), DoubleDouble{});
    for (const auto& [group, sign] : column.coding) {
      for (Index h = 0; h < b.groupCount; ++h) add(row[static_cast<std::size_t>(h)], sums(group, h), sign);
    }
    Index j = 0;
    for (const CodedTerm::Column& other : b.columns) {
      DoubleDouble& product = products(i, j);
      for (const auto& [group, sign] : other.coding) add(product, row[static_cast<std::size_t>(group)], sign);
      ++j;
    }
    ++i;
  }
  return products;
}

}  // namespace

std::vector<Factor> factorsOf(const StringArray& df) {
  std::vector<Factor> factors;
  for (Index j = 1; j <= df.columns(); ++j) {
    SortedLevels<std::string> levels = sortedLevels(df.column(j));
    if (levels.count() < 2) refuse("Factors must have more than 1 level");
    factors.push_back({std::move(levels.values), std::move(levels.codes)});
  }
  return factors;
}

CodedTerm constantTerm() {
  CodedTerm constant;
  constant.columns = {{"Constant", {{0, 1.0}}}};
  return constant;
}

std::vector<CodedTerm> codedTerms(const std::vector<Term>& terms, const std::vector<Factor>& factors,
                                  const DoubleArray& dc, Index rows) {
  ColumnBudget budget(rows);
  for (const Term& term : terms) {
    if (term.kind != TermKind::Nested) budget.take(term, factors);
  }
  std::vector<CodedTerm> result;
  for (const Term& term : terms) {
    if (term.kind == TermKind::Nested) {
      result.push_back(nestedTerm(term, factors));
      budget.take(static_cast<Index>(result.back().columns.size()));
    } else {
      result.push_back(crossedTerm(term, factors, dc));
    }
  }
  return result;
}

CrossProducts crossProducts(const std::vector<CodedTerm>& design, std::span<const double> y) {
  CodedTerm response;
  response.factor.assign(y.begin(), y.end());
  response.columns = {{"", {{0, 1.0}}}};
  std::vector<const CodedTerm*> terms;
  terms.reserve(design.size() + 1);
  for (const CodedTerm& term : design) terms.push_back(&term);
  terms.push_back(&response);

  std::size_t count = 0;
  for (const CodedTerm* term : terms) count += term->columns.size();
  std::vector<DoubleDouble> products(count * count);
  std::size_t firstRow = 0;
  for (std::size_t a = 0; a < terms.size(); ++a) {
    std::size_t firstColumn = firstRow;
    for (std::size_t b = a; b < terms.size(); ++b) {
      Sums block = codedProducts(*terms[a], *terms[b], static_cast<Index>(y.size()));
      for (std::size_t i = 0; i < terms[a]->columns.size(); ++i) {
        for (std::size_t j = 0; j < terms[b]->columns.size(); ++j) {
          const DoubleDouble product = block(static_cast<Index>(i), static_cast<Index>(j));
          products[(firstRow + i) * count + firstColumn + j] = product;
          products[(firstColumn + j) * count + firstRow + i] = product;
        }
      }
      firstColumn += terms[b]->columns.size();
    }
    firstRow += terms[a]->columns.size();
  }
  return {y.size(), count, std::move(products)};
}

DoubleArray fittedValues(const std::vector<CodedTerm>& design, const DoubleArray& coef, Index rows) {
  DoubleArray fitted(rows);
  Index place = 0;
  for (const CodedTerm& term : design) {
    std::vector<double> effects(static_cast<std::size_t>(term.groupCount), 0.0);
    for (const CodedTerm::Column& column : term.columns) {
      ++place;
      for (const auto& [group, sign] : column.coding) {
        effects[static_cast<std::size_t>(group)] += sign * coef(place);
      }
    }
    for (Index i = 1; i <= rows; ++i) {
      const auto row = static_cast<std::size_t>(i - 1);
      fitted(i) += effects[static_cast<std::size_t>(term.groupOf(row))] * term.factorOf(row);
    }
  }
  return fitted;
}

}  // namespace zelkova::glm
