#pragma once

#include <map>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "zelkova/frame/Array.h"

/// The language in which a general linear model is written, and its coded columns.
namespace zelkova::glm {

/// What is wrong with the model or the data, in the words that the caller's `ErrorCode` gets.
struct Refusal {
  std::string_view text;
};

[[noreturn]] inline void refuse(std::string_view text) { throw Refusal{text}; }

enum class NameType { Factor = 'F', Covariate = 'C' };

/// A column of the caller's tables of factors and covariates.
struct Variable {
  NameType type;
  Index column;  ///< from 1

  friend bool operator==(const Variable&, const Variable&) = default;
  friend bool operator<(const Variable& a, const Variable& b) {
    return std::tie(a.type, a.column) < std::tie(b.type, b.column);
  }
};

enum class TermKind { Single = 'S', Interaction = 'I', Nested = 'N' };

/// One term of a model. The parts of a nested term are the inner factor and then those that enclose it.
struct Term {
  TermKind kind;
  std::vector<Variable> parts;
  std::vector<std::string> names;  ///< the parts as the caller wrote them
  std::string reported;            ///< the text that tables show
};

/// The names of the factors and the covariates, which must outlive this. Names compare without regard to case
/// and to blanks around them; of two that are the same, the first counts, factors before covariates.
class Names {
 public:
  Names(const StringArray& factors, const StringArray& covariates);

  /// What a name in a term means. Refuses an unknown one with "Illegal terms in model".
  Variable find(std::string_view name) const;
  bool knows(std::string_view name) const;

  /// The name as the caller declared it.
  std::string declared(const Variable& variable) const;

 private:
  const StringArray& factors_;
  const StringArray& covariates_;
  std::map<std::string, Variable> variables_;
};

/// The terms of `model`, in its order. "A" is a single name; "A*B" an interaction; "B(A)" and "C(A, B)" an
/// inner factor nested in the factors of the list, which are separated by commas or blanks.
///
/// Refusals, each looked for in all terms before the next: "Illegal terms in model", "Nested terms must be
/// factors", "Model is not hierarchical". The last asks that all lower interactions of an interaction, down
/// to the single names, stand in the model, and the factors that enclose another, each by itself or as the
/// inner factor of another nested term. Failure 9 for a model without terms.
std::vector<Term> parseModel(const StringArray& model, const Names& names);

/// A term with its names as declared, without blanks: "A", "A*B", "C(A,B)".
std::string canonicalText(const Term& term, const Names& names);

}  // namespace zelkova::glm
