#pragma once

#include <vector>

#include "zelkova/catalogue/Catalogue.h"

namespace zelkova {

// One function a subject: appends the classes of that subject, described.
void describeFrame(std::vector<Class>& classes);
void describeKit(std::vector<Class>& classes);
void describeHypothesis(std::vector<Class>& classes);
void describeModels(std::vector<Class>& classes);
void describeLogistic(std::vector<Class>& classes);
void describeANOM(std::vector<Class>& classes);
void describeCharts(std::vector<Class>& classes);
void describeCapability(std::vector<Class>& classes);
void describeGage(std::vector<Class>& classes);
void describeReliability(std::vector<Class>& classes);
void describePlots(std::vector<Class>& classes);
void describePower(std::vector<Class>& classes);
void describeRandom(std::vector<Class>& classes);
void describeDOE(std::vector<Class>& classes);
void describeTemplates(std::vector<Class>& classes);

/// The host's functions under their own names.
Class describeWorksheetFunctions();

}  // namespace zelkova
