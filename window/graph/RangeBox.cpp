#include "window/graph/RangeBox.h"

#include "core/base/Convert.h"
#include "core/base/NumberText.h"

#include <cmath>

namespace tracelet {

void RangeBox::Show(double end, double span) {
    const double step = std::pow(10.0, std::floor(std::log10(span)) - 6);
    const double rounded = std::nearbyint(end / step) * step;
    exact = end;
    shown = QString::fromStdString(NumberText(std::isfinite(rounded) ? rounded : end));
    setText(shown);
}

double RangeBox::Number() const {
    return text() == shown ? exact : TextToDouble(text().toStdString());
}

} // namespace tracelet
