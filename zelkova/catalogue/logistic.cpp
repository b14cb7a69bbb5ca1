#include "zelkova/catalogue/describe.h"
#include "zelkova/catalogue/subjects.h"
#include "zelkova/logistic/yLogistic.h"

namespace zelkova {

namespace {

using Note = ArgumentNote;

Class logistic() {
  Note predictors("x", "the predictors, a column for each, without a column for the constant");
  predictors.table();
  const Note names("X_nom", "the predictors' names; enter no result and may be left out");
  Note link("link_f", "the link; any other text ends in failure 11");
  link.choices({"Logit", "Normit", "Gompit"});
  const Note logLikelihood("loglikelihood", "the log-likelihood at its maximum");
  Note pairs("Associationtable",
             "pairs of observations of different levels, by rows: concordant, discordant, tied, total");
  pairs.table().slots(PairColumns::names);
  Note measures("SumMeasure",
                "(concordant - discordant) over all pairs, over pairs not tied, and over n(n - 1)/2");
  measures.slots(PairMeasures::names);
  const auto response = [](const char* help) {
    Note note("Y", help);
    note.vectorOrTable();
    return note;
  };
  const auto coefficients = [](const char* help) {
    Note note("regtable", help);
    note.table().slots(LogisticCoefficients::names);
    return note;
  };
  const auto goodness = [](const char* help) {
    Note note("GOFtable", help);
    note.table().slots(GoodnessOfFit::names);
    return note;
  };

  const char* const patterns =
      "Rows with the same predictors form a covariate pattern. A model that leaves no degree of freedom has "
      "a chi-square near 0 without a p-value.";
  const char* const noMaximum =
      "Failure 5012 means that there is no single best fit: a predictor is constant, predictors explain each "
      "other (a full set of dummies does), or the model separates the levels perfectly, so that "
      "coefficients grow without end. Where only part of the data is separated, the coefficients concerned "
      "come out large with a standard error many times larger.";
  const char* const testOfSlopes =
      "The test that all slopes are zero follows from loglikelihood: G = 2 (loglikelihood - LL0), with LL0 "
      "the sum over the levels of n(level) ln(n(level)/n), has the chi-square distribution with as many "
      "degrees of freedom as there are slopes (WorksheetFunction.ChiDist).";
  const char* const oddsRatios =
      "Odds ratios and their 95 percent limits are given for the slopes under the link Logit, and are left "
      "out where they exceed exp(700).";

  return Description<yLogistic>("yLogistic",
                                "Logistic regression of a response of two, of ordered or of unordered levels")
      .method(
          "Binary_regression", &yLogistic::Binary_regression,
          "A response of two levels: fit, goodness of fit, association and influence",
          response("the response: 1 for an event, 0 for none"), predictors, names, link,
          coefficients("the constant, then the predictors in their order"), logLikelihood,
          goodness("Pearson, deviance, Hosmer-Lemeshow; under Logit also Brown's general and symmetric "
                   "alternative"),
          pairs, measures, Note("leverage", "leverage of each pattern"),
          Note("probability", "fitted probability of an event in each pattern"),
          Note("deltacs", "what the Pearson chi-square loses without the pattern"),
          Note("deltadev", "what the deviance loses without the pattern"),
          Note("deltabetas", "how far the coefficients move without the pattern, by standardised residuals"),
          Note("deltabeta", "the same by residuals that are not standardised"))
      .note(patterns)
      .note(
          "Results for each pattern stand in order of first appearance. A pattern of leverage 1, which alone "
          "determines a coefficient, has no influence measures.")
      .note(
          "Hosmer-Lemeshow groups are ten, or as many as there are patterns: whole patterns in order of "
          "their probability, cut where the number of rows comes nearest to equal shares. The statistic is "
          "over events and non-events, with groups - 2 degrees of freedom.")
      .note(
          "Brown's tests are score tests of a link with two more parameters (general) and with one "
          "(symmetric). A parameter that the data cannot tell from the fit's own takes no degree of "
          "freedom.")
      .note(
          "Pairs are of an event and a non-event of different patterns. Probabilities within 1E-9 of each "
          "other, relative to them, are tied.")
      .note(oddsRatios)
      .note(testOfSlopes)
      .note(noMaximum)
      .method("Ordinal_regression", &yLogistic::Ordinal_regression,
              "A response of three or more ordered levels: the cumulative (proportional odds) model",
              response("the response: whole numbers, each from the lowest to the highest at least once"),
              predictors, names, link,
              coefficients("the cut points between neighbouring levels, then the predictors in their order"),
              logLikelihood, goodness("Pearson, deviance"), pairs, measures,
              Note("numresponseorder", "the number of levels; what comes in is not read").inOut())
      .note(
          "The model is P(response <= level j) = F(cut point j + slopes times predictors), F the inverse of "
          "the link: a positive slope makes low levels more likely. Standard errors come from the expected "
          "information.")
      .note("A response of fewer than three levels shows a message, and nothing is filled.")
      .note(patterns)
      .note(
          "A pair is concordant where the observation of the higher level has the higher mean level under "
          "the fitted probabilities; means within 1E-9 of each other, relative to them, are tied, as are "
          "observations of one pattern.")
      .note(oddsRatios)
      .note(testOfSlopes)
      .note(noMaximum)
      .method("Nominal_regression", &yLogistic::Nominal_regression,
              "A response of unordered levels: the multinomial logit model against a reference level",
              response("the response: texts or numbers; levels are told apart by their texts, case included"),
              predictors, names, Note("refevent", "the reference level; failure 5012 if it is none"),
              coefficients("a block for each other level: its constant, then the predictors in their order"),
              logLikelihood, goodness("Pearson, deviance"),
              Note("Yname", "the levels of the blocks of regtable, in order of first appearance"))
      .note("Coefficients are logarithms of the odds of a level against the reference.")
      .note(patterns)
      .note(oddsRatios)
      .note(testOfSlopes)
      .note(noMaximum)
      .done();
}

}  // namespace

void describeLogistic(std::vector<Class>& classes) { classes.push_back(logistic()); }

}  // namespace zelkova
