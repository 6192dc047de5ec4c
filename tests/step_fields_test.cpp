// Entries of the step fields that are longer than any number, or pasted, and those of an operator
// who writes a decimal comma.
#include <QClipboard>

#include "tests/window_fixture.h"

namespace pelmora {
namespace {

using StepFields = WindowTest;

TEST_F(StepFields, TakeNumbersOfAnyLengthAndInTheLocalesForm) {
  QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
  constexpr char kDuration[] = "CWNumEditTimeStep";
  const std::tuple<const char*, bool, QString, const char*> cases[] = {
      {"Text1_3", false, QString(330, '9'), "127"},
      {"Text1_3", false, "-" + QString(330, '9'), "-128"},
      {"Text1_3", false, QString(330, '0') + "5", "5"},
      {"Text1_3", true, "1.000", "70"},
      {kDuration, false, QString(400, '9'), "32767 ms"},
      {kDuration, false, "40,6", "41 ms"},
      {kDuration, false, "1.000", "1000 ms"},  // a thousand: the point is no key
      {kDuration, true, "1.000", "70 ms"},
      {kDuration, true, QString::fromUtf8(" 1\u00A0000\u202F"), "1000 ms"},
  };
  for (const auto& [field, pasted, entry, shown] : cases) {
    QGuiApplication::clipboard()->setText(entry);
    hands->Type(field, "70");
    hands->Type(field, pasted ? "" : entry, false);
    hands->Keys(hands->Find<QWidget>(field), pasted ? "Ctrl+V Return" : "Return");
    EXPECT_EQ(hands->Read(field), shown) << pasted << ' ' << entry.toStdString();
  }
  QLocale::setDefault(QLocale::c());
}

}  // namespace
}  // namespace pelmora
