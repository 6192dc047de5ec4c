#include "platform/controls/typed_number.h"

#include <QLocale>
#include <algorithm>
#include <cmath>

namespace platform {

std::optional<int> TypedNumber(const QString& text, int minimum, int maximum) {
  QLocale locale;
  locale.setNumberOptions(QLocale::RejectGroupSeparator);
  bool taken = false;
  const double number = locale.toDouble(text, &taken);
  // The toolkit takes "inf" and "nan". It refuses a text with 0, and hundreds of digits with an
  // infinity, which is cut to the range as every large number is.
  if (taken != std::isfinite(number)) return std::nullopt;
  return static_cast<int>(std::clamp<double>(std::nearbyint(number), minimum, maximum));
}

}  // namespace platform
