#include "zelkova/catalogue/describe.h"
#include "zelkova/catalogue/subjects.h"
#include "zelkova/frame/RunningObjects.h"

namespace zelkova {

Class describeWorksheetFunctions() {
  using Note = ArgumentNote;
  using WF = WorksheetFunction;
  const Note p("p", "a probability");
  const Note upperTail("p", "the probability above the answer");
  const Note df("df", "degrees of freedom, cut to a whole number");
  const Note df1("df1", "degrees of freedom of the numerator, cut to a whole number");
  const Note df2("df2", "degrees of freedom of the denominator, cut to a whole number");
  const Note mean("mean", "the mean");
  const Note sd("sd", "the standard deviation");
  const Note logMean("mean", "the mean of the logarithm");
  const Note logSd("sd", "the standard deviation of the logarithm");
  const Note alpha("alpha", "the first shape");
  const Note beta("beta", "the second shape");
  const Note cumulative("cumulative",
                        "true for the probability up to the point, false for that of the point itself");
  const Note values("values", "the values");
  const Note knownY("knownY", "the responses");
  const Note knownX("knownX", "the predictor");

  Class functions =
      Description<WF>("WorksheetFunction", "Functions of the host spreadsheet")
          .method("NormSDist", &WF::NormSDist, "Standard normal probability up to z", Note("z", "the point"))
          .method("NormSInv", &WF::NormSInv, "Standard normal quantile", p)
          .method("NormDist", &WF::NormDist, "Normal probability up to x, or density", Note("x", "the point"),
                  mean, sd, cumulative)
          .method("NormInv", &WF::NormInv, "Normal quantile", p, mean, sd)
          .method("LogNormDist", &WF::LogNormDist, "Lognormal probability up to x", Note("x", "the point"),
                  logMean, logSd)
          .method("LogInv", &WF::LogInv, "Lognormal quantile", p, logMean, logSd)
          .method("TDist", &WF::TDist, "Student's t: probability above x, in one tail or in both",
                  Note("x", "the point, 0 or above"), df, Note("tails", "1 or 2"))
          .method("TInv", &WF::TInv,
                  "Student's t: the point that both tails together exceed with probability p", p, df)
          .method("ChiDist", &WF::ChiDist, "Chi-square: probability above x",
                  Note("x", "the point, 0 or above"), df)
          .method("ChiInv", &WF::ChiInv, "Chi-square: the point exceeded with probability p", upperTail, df)
          .method("FDist", &WF::FDist, "F: probability above x", Note("x", "the point, 0 or above"), df1, df2)
          .method("FInv", &WF::FInv, "F: the point exceeded with probability p", upperTail, df1, df2)
          .method("BetaDist", &WF::BetaDist, "Beta probability up to x", Note("x", "the point, from 0 to 1"),
                  alpha, beta)
          .method("BetaInv", &WF::BetaInv, "Beta quantile", p, alpha, beta)
          .method("GammaInv", &WF::GammaInv, "Gamma quantile", p, Note("alpha", "the shape"),
                  Note("beta", "the scale"))
          .method("GammaLn", &WF::GammaLn, "Natural logarithm of the gamma function",
                  Note("x", "the point, above 0"))
          .method("BinomDist", &WF::BinomDist, "Binomial probability",
                  Note("successes", "cut to a whole number"), Note("trials", "cut to a whole number"),
                  Note("probability", "of a success in one trial"), cumulative)
          .method("Poisson", &WF::Poisson, "Poisson probability",
                  Note("x", "the count, cut to a whole number"), mean, cumulative)
          .method("HypGeomDist", &WF::HypGeomDist, "Hypergeometric probability",
                  Note("sampleSuccesses", "successes in the sample"),
                  Note("sampleSize", "size of the sample"),
                  Note("populationSuccesses", "successes in the population"),
                  Note("populationSize", "size of the population"))
          .method("ExponDist", &WF::ExponDist, "Exponential probability up to x, or density",
                  Note("x", "the point, 0 or above"), Note("lambda", "the rate"), cumulative)
          .method("Weibull", &WF::Weibull, "Weibull probability up to x, or density",
                  Note("x", "the point, 0 or above"), Note("shape", "the shape"), Note("scale", "the scale"),
                  cumulative)
          .method("Max", static_cast<double (WF::*)(const DoubleArray&)>(&WF::Max), "Largest value",
                  Note(values).vectorOrTable().spread())
          .method("Min", static_cast<double (WF::*)(const DoubleArray&)>(&WF::Min), "Smallest value",
                  Note(values).vectorOrTable().spread())
          .method("Ceiling", &WF::Ceiling, "x rounded away from 0 to a multiple of the significance",
                  Note("x", "the number"), Note("significance", "of the sign of x"))
          .method("RoundUp", &WF::RoundUp, "x rounded away from 0", Note("x", "the number"),
                  Note("digits", "digits behind the point; negative ones stand before it"))
          .method("Gcd", &WF::Gcd, "Greatest common divisor", Note("a", "cut to a whole number"),
                  Note("b", "cut to a whole number"))
          .method("Sum", &WF::Sum, "Sum", Note(values).vectorOrTable())
          .method("Average", &WF::Average, "Arithmetic mean", Note(values).vectorOrTable())
          .method("Pi", &WF::Pi, "The constant pi")
          .method("Slope", &WF::Slope, "Slope of the least-squares line", knownY, knownX)
          .method("Intercept", &WF::Intercept, "Intercept of the least-squares line", knownY, knownX)
          .method("Correl", &WF::Correl, "Pearson's correlation", Note("a", "the first column"),
                  Note("b", "the second column"))
          .method("LinEst", &WF::LinEst,
                  "Least squares: coefficients in reverse order, and their statistics below", knownY,
                  Note("knownX", "the predictors, one a column").vectorOrTable(),
                  Note("constant", "true fits a constant").optional(true),
                  Note("stats",
                       "true gives five rows: coefficients; their standard errors; R squared and that of y; "
                       "F and degrees "
                       "of freedom; sums of squares of regression and residuals")
                      .optional(false))
          .method("MInverse", &WF::MInverse, "Inverse of a square matrix",
                  Note("matrix", "the matrix").table())
          .done();
  functions.binds = true;
  functions.create = [] {
    const std::shared_ptr<Host> host = runningHost();
    return std::shared_ptr<void>(host, &host->worksheetFunction());
  };
  return functions;
}

}  // namespace zelkova
