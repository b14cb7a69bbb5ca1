#include "zelkova/catalogue/describe.h"
#include "zelkova/catalogue/subjects.h"
#include "zelkova/random/yRandom.h"

namespace zelkova {

void describeRandom(std::vector<Class>& classes) {
  using Note = ArgumentNote;

  classes.push_back(
      Description<yRandom>("yRandom", "Random data from 17 distributions")
          .method("RandomOutput", &yRandom::RandomOutput, "A table of random values",
                  Note("Distribution", "the distribution")
                      .choices({"Chi-square", "Normal", "F", "t", "Uniform", "Bernoulli", "Binomial",
                                "Hypergeometric", "Discrete", "Integer", "Poisson", "Beta", "Exponential",
                                "Gamma", "Lognormal", "Triangular", "Weibull"}),
                  Note("NumCol", "number of columns, rounded half to even, from 1 to 32767"),
                  Note("NumRow", "number of rows, likewise"),
                  Note("Para1", "the first parameter; empty for 0"), Note("Para2", "the second"),
                  Note("Para3", "the third"), Note("dValue", "the values of Discrete"),
                  Note("dProb", "their weights, which need not sum to 1"),
                  Note("RandomValue", "the values, drawn down each column in turn").table())
          .note(
              "Parameters in order. Normal: mean, standard deviation. Lognormal: those of ln x. Uniform and "
              "Integer: lower and upper end. Triangular: minimum, mode, maximum. Exponential: mean. Weibull "
              "and Gamma: shape, scale. Beta: alpha, beta. t and Chi-square: degrees of freedom. F: those of "
              "numerator and denominator. Bernoulli: none, probability. Binomial: trials, probability. "
              "Poisson: mean. Hypergeometric: size of the population, successes in it, size of the sample. "
              "A parameter that the distribution has not is not read.")
          .note("Poisson and Hypergeometric give the count whose cumulated probability lies nearest to a "
                "uniform draw, by steps that shift the mean up by up to a half, and nothing above 1000; see "
                "the page of numeric choices.")
          .note("The stream of uniform draws is started anew from the clock by each call, unless the program "
                "was given --seed. A text that names no distribution gives a table of zeros.")
          .done());
}

}  // namespace zelkova
