#include "zelkova/frame/Failure.h"
#include "zelkova/templates/drawing.h"
#include "zelkova/templates/yTemplate.h"

namespace zelkova {

namespace {

Sheet& given(const std::shared_ptr<Sheet>& sheet, const char* name) {
  if (sheet == nullptr) raise(FailureNumber::NoObject, std::string(name) + " is no worksheet");
  return *sheet;
}

}  // namespace

void yTemplate::PassSheet(const std::shared_ptr<Sheet>& arg0) {
  given(arg0, "arg0");
  sheet_ = arg0;
}

Sheet& yTemplate::target() const {
  if (sheet_ == nullptr)
    raise(FailureNumber::NoObject, "PassSheet must come first, there is no sheet to draw on");
  return *sheet_;
}

void yTemplate::SuperFormat(const std::shared_ptr<Sheet>& nWS, const std::string& selectedcells, bool aborder,
                            std::int16_t interiorColour, std::int16_t fontsize, bool aBold,
                            const std::string& Halignment, const std::string& Valignment, bool wraptext,
                            const Variant& inputtext) const {
  drawing::format(given(nWS, "nWS"), selectedcells,
                  {.border = aborder,
                   .interior = interiorColour,
                   .fontSize = static_cast<double>(fontsize),
                   .bold = aBold,
                   .horizontal = Halignment,
                   .vertical = Valignment,
                   .wrap = wraptext},
                  inputtext);
}

void yTemplate::Superborder(const std::shared_ptr<Sheet>& nWS, const std::string& selectedcells,
                            std::int16_t interiorColour, bool intborder) const {
  drawing::frame(given(nWS, "nWS"), selectedcells, interiorColour, intborder);
}

void yTemplate::AddComment(const std::shared_ptr<Sheet>& tWS, const std::string& tcell,
                           const std::string& stext, double dwidth, double dheight) const {
  drawing::comment(given(tWS, "tWS"), tcell, stext, dwidth, dheight);
}

void yTemplate::AddListVad(const std::shared_ptr<Sheet>& tWS, const std::string& tcell, const Variant& v1,
                           const Variant& v2, const Variant& v3, const Variant& v4, const Variant& v5,
                           const Variant& v6, const Variant& v7, const Variant& v8, const Variant& v9,
                           const Variant& v10) const {
  drawing::list(given(tWS, "tWS"), tcell, {v1, v2, v3, v4, v5, v6, v7, v8, v9, v10});
}

}  // namespace zelkova
