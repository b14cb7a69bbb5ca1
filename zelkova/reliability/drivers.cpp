#include <algorithm>
#include <cmath>

#include "zelkova/frame/NoValue.h"
#include "zelkova/frame/arithmetic.h"
#include "zelkova/kit/modzMatrix.h"
#include "zelkova/reliability/LifeDistribution.h"
#include "zelkova/reliability/retry.h"
#include "zelkova/reliability/yReliability.h"

namespace zelkova {

namespace {

bool holdsAny(const DoubleArray& P, const DoubleArray& hold) {
  for (Index k = 1; k <= P.rows(); ++k) {
    if (hold(k) != NoValue) return true;
  }
  return false;
}

}  // namespace

void yReliability::ParaAnalysis(const DoubleArray& SA0, const DoubleArray& EA0, const DoubleArray& FA0,
                                const std::string& dist, const std::string& pMtd, const std::string& estimate,
                                const DoubleArray& Percent, const DoubleArray& times, DoubleArray& P,
                                DoubleArray& PM, StringArray& PMS, DoubleArray& PMM, DoubleArray& Para,
                                double& corr, DoubleArray& PlotX, DoubleArray& PlotY, DoubleArray& ParaEst,
                                DoubleArray& SurvTable, const DoubleArray& hold, double& var1, double& var2,
                                double& var3, double& covar12, double& covar13, double& covar23,
                                bool BPercMTTF, bool BCalPara, bool BEstPara, bool BCalTimes,
                                double CLevel) const {
  if (!lifeDistribution(dist)) return;
  DoubleArray SA = SA0;
  DoubleArray EA = EA0;
  DoubleArray FA = FA0;
  const DoubleArray held = heldOf(2, hold);
  Para_LS(SA, EA, FA, pMtd, dist, P, corr, PlotX, PlotY, held(2));
  const bool leastSquares = estimate == "Least squares";
  if (leastSquares && P(1) == NoValue) {
    xlApp->messageBox("Least square estimates cannot be calculated");
    raise(FailureNumber::DivisionByZero);
  }

  const DoubleArray line = P;
  // Without a failure the likelihood has no maximum, and what a search would end at means nothing.
  const auto ends = EA.vector();
  const bool hasFailure = std::any_of(ends.begin(), ends.end(), [](double end) { return end != NoValue; });
  const bool found = hasFailure && searchFrom(line, held, [&](const DoubleArray& start) {
                       P = start;
                       DoubleArray MLO;
                       DoubleArray FM;
                       Para_ML(SA, EA, FA, dist, P, MLO, FM, held);
                       if (leastSquares) P = line;

                       const double Para1 = P(1);
                       const double Para2 = P(P.rows());
                       var1 = var2 = var3 = covar12 = covar13 = covar23 = NoValue;
                       if (P.rows() == 1) {
                         var1 = checked::quotient(1, FM(1, 1));
                         var2 = var3 = covar12 = covar13 = covar23 = 0;
                       } else {
                         const DoubleArray V = MatInverse(FM);
                         var1 = V(1, 1);
                         var2 = holdsAny(P, held) ? 0 : V(2, 2);
                         covar12 = V(1, 2);
                       }
                       if (BPercMTTF)
                         PercMTTF(CLevel, dist, Percent, Para1, Para2, var1, var2, covar12, PM, PMS, PMM);
                       if (BCalPara) CalPara(SA, EA, FA, pMtd, dist, Para1, Para2, Para);
                       if (BEstPara) EstPara(CLevel, Para1, Para2, dist, var1, var2, ParaEst);
                       if (BCalTimes)
                         CalTimes(CLevel, Para1, Para2, dist, var1, var2, covar12, times, SurvTable);
                     });
  if (!found) xlApp->messageBox("Cannot Find solution");
}

void yReliability::ParaAnalysisPlot(const std::string& dist, double Para1, double Para2, double var1,
                                    double var2, [[maybe_unused]] double var3, double covar12,
                                    [[maybe_unused]] double covar13, [[maybe_unused]] double covar23,
                                    DoubleArray& PlotHVLU, DoubleArray& HarzX, DoubleArray& HarzY,
                                    DoubleArray& PDFX, DoubleArray& PDFY, DoubleArray& SurvX,
                                    DoubleArray& SurvY, DoubleArray& SurvYL, DoubleArray& SurvYU,
                                    DoubleArray& FailX, DoubleArray& FailY, DoubleArray& FailYL,
                                    DoubleArray& FailYU, bool BProbPlot, bool BSurvFailPlot, bool BHarzPDF,
                                    double CLevel) const {
  if (BProbPlot) ProbPlot(CLevel, Para1, Para2, dist, var1, var2, covar12, PlotHVLU);
  if (BSurvFailPlot) {
    SurvFailPlot(CLevel, Para1, Para2, dist, var1, var2, covar12, SurvX, SurvY, SurvYL, SurvYU, FailX, FailY,
                 FailYL, FailYU);
  }
  if (BHarzPDF) HarzPDFPlot(Para1, Para2, dist, HarzX, HarzY, PDFX, PDFY);
}

}  // namespace zelkova
