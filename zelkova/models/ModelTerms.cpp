#include "zelkova/models/ModelTerms.h"

#include <algorithm>
#include <set>

#include "zelkova/frame/numberText.h"

namespace zelkova::glm {

namespace {

[[noreturn]] void refuseTerms() { refuse("Illegal terms in model"); }

/// The texts between the separators, trimmed; none of them may be empty.
std::vector<std::string> split(std::string_view text, char separator) {
  std::vector<std::string> pieces;
  for (std::size_t start = 0; start <= text.size();) {
    const std::size_t end = std::min(text.find(separator, start), text.size());
    const std::string_view piece = trimmed(text.substr(start, end - start));
    if (piece.empty()) refuseTerms();
    pieces.emplace_back(piece);
    start = end + 1;
  }
  return pieces;
}

/// The names of a nested term's list. Between commas, blanks separate names too, unless they belong to one.
std::vector<std::string> splitList(std::string_view list, const Names& names) {
  std::vector<std::string> result;
  for (const std::string& piece : split(list, ',')) {
    if (names.knows(piece)) {
      result.push_back(piece);
      continue;
    }
    for (std::size_t start = 0; start < piece.size();) {
      const std::size_t end = std::min(piece.find_first_of(" \t", start), piece.size());
      result.push_back(piece.substr(start, end - start));
      start = std::min(piece.find_first_not_of(" \t", end), piece.size());
    }
  }
  return result;
}

bool hasRepeats(std::vector<Variable> variables) {
  std::sort(variables.begin(), variables.end());
  return std::adjacent_find(variables.begin(), variables.end()) != variables.end();
}

Term parseNested(std::string_view text, std::size_t opening, const Names& names) {
  const std::string_view inner = trimmed(text.substr(0, opening));
  if (inner.empty() || text.back() != ')') refuseTerms();
  const std::string_view list = trimmed(text.substr(opening + 1, text.size() - opening - 2));
  Term term{TermKind::Nested, {}, {std::string(inner)}, std::string(inner) + "(" + std::string(list) + ")"};
  for (std::string& name : splitList(list, names)) term.names.push_back(std::move(name));
  return term;
}

Term parseCrossed(std::string_view text) {
  std::vector<std::string> pieces = split(text, '*');
  const TermKind kind = pieces.size() == 1 ? TermKind::Single : TermKind::Interaction;
  return {kind, {}, std::move(pieces), std::string(text)};
}

Term parse(std::string_view typed, const Names& names) {
  const std::string_view text = trimmed(typed);
  const std::size_t opening = text.find('(');
  // Parentheses in any other place end up inside a name, and no name has any.
  Term term = opening == std::string_view::npos ? parseCrossed(text) : parseNested(text, opening, names);
  for (const std::string& name : term.names) {
    if (name.find_first_of("*()") != std::string::npos) refuseTerms();
    term.parts.push_back(names.find(name));
  }
  return term;
}

/// What makes two terms the same, whatever the order in which their names are written.
struct Identity {
  bool nested;
  Variable inner;
  std::vector<Variable> others;

  friend bool operator<(const Identity& a, const Identity& b) {
    return std::tie(a.nested, a.inner, a.others) < std::tie(b.nested, b.inner, b.others);
  }
};

Identity crossing(std::vector<Variable> parts) {
  std::sort(parts.begin(), parts.end());
  return {false, {}, std::move(parts)};
}

Identity identityOf(const Term& term) {
  if (term.kind != TermKind::Nested) return crossing(term.parts);
  Identity identity{true, term.parts.front(), {term.parts.begin() + 1, term.parts.end()}};
  std::sort(identity.others.begin(), identity.others.end());
  return identity;
}

/// Factors that stand more than once in a term would give columns that are sums of each other; powers of a
/// covariate are sound.
void refuseRepeatedFactors(const Term& term) {
  std::vector<Variable> factors = term.parts;
  std::erase_if(factors, [](const Variable& part) { return part.type != NameType::Factor; });
  if (hasRepeats(factors)) refuseTerms();
}

void checkNesting(const std::vector<Term>& terms) {
  for (const Term& term : terms) {
    if (term.kind != TermKind::Nested) continue;
    const auto isFactor = [](const Variable& part) { return part.type == NameType::Factor; };
    if (!std::all_of(term.parts.begin(), term.parts.end(), isFactor)) {
      refuse("Nested terms must be factors");
    }
  }
}

void checkHierarchy(const std::vector<Term>& terms, const std::set<Identity>& standing) {
  const auto refuseModel = [] { refuse("Model is not hierarchical"); };
  std::set<Variable> innerFactors;
  for (const Term& term : terms) {
    if (term.kind == TermKind::Nested) innerFactors.insert(term.parts.front());
  }
  for (const Term& term : terms) {
    if (term.kind == TermKind::Interaction) {
      // The interactions one name shorter are enough: being in the model, they are asked for theirs in turn.
      for (std::size_t i = 0; i < term.parts.size(); ++i) {
        std::vector<Variable> lower = term.parts;
        lower.erase(lower.begin() + static_cast<Index>(i));
        if (!standing.contains(crossing(std::move(lower)))) refuseModel();
      }
    } else if (term.kind == TermKind::Nested) {
      for (std::size_t i = 1; i < term.parts.size(); ++i) {
        const Variable& enclosing = term.parts[i];
        if (!standing.contains(crossing({enclosing})) && !innerFactors.contains(enclosing)) {
          refuseModel();
        }
      }
    }
  }
}

}  // namespace

Names::Names(const StringArray& factors, const StringArray& covariates)
    : factors_(factors), covariates_(covariates) {
  const auto enter = [this](const StringArray& names, NameType type) {
    for (Index i = 1; i <= names.size(); ++i) {
      variables_.emplace(upperCase(trimmed(names(i))), Variable{type, i});
    }
  };
  enter(factors, NameType::Factor);
  enter(covariates, NameType::Covariate);
}

bool Names::knows(std::string_view name) const { return variables_.contains(upperCase(name)); }

Variable Names::find(std::string_view name) const {
  const auto found = variables_.find(upperCase(name));
  if (found == variables_.end()) refuseTerms();
  return found->second;
}

std::string Names::declared(const Variable& variable) const {
  const StringArray& names = variable.type == NameType::Factor ? factors_ : covariates_;
  return std::string(trimmed(names(variable.column)));
}

std::vector<Term> parseModel(const StringArray& model, const Names& names) {
  if (!model.filled()) raise(FailureNumber::OutOfRange, "model holds no term");
  std::vector<Term> terms;
  std::set<Identity> standing;
  for (const std::string& text : model.vector()) {
    terms.push_back(parse(text, names));
    if (!standing.insert(identityOf(terms.back())).second) refuseTerms();
    refuseRepeatedFactors(terms.back());
  }
  checkNesting(terms);
  checkHierarchy(terms, standing);
  return terms;
}

std::string canonicalText(const Term& term, const Names& names) {
  std::string text = names.declared(term.parts.front());
  const bool nested = term.kind == TermKind::Nested;
  for (std::size_t i = 1; i < term.parts.size(); ++i) {
    text += nested ? (i == 1 ? "(" : ",") : "*";
    text += names.declared(term.parts[i]);
  }
  return nested ? text + ")" : text;
}

}  // namespace zelkova::glm
