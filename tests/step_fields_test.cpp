// Entries of the step fields that are longer than any number, or none.
#include <QClipboard>
#include <QGuiApplication>
#include <QLocale>

#include "tests/window_fixture.h"

namespace pelmora {
namespace {

using PositionFields = WindowTest;

TEST_F(PositionFields, TakeNumbersOfAnyLength) {
  const std::pair<QString, const char*> cases[] = {{QString(330, '9'), "127"},
                                                   {"-" + QString(330, '9'), "-128"},
                                                   {QString(330, '0') + "5", "5"}};
  for (const auto& [typed, offset] : cases) {
    hands->Type("Text1_3", typed);
    EXPECT_EQ(hands->Read("Text1_3"), offset) << typed.toStdString();
  }
  for (const QString& pasted :
       {QString("inf"), QString("nan"), QString("1 2"), "1" + QLocale().groupSeparator() + "000"}) {
    QGuiApplication::clipboard()->setText(pasted);
    hands->Keys(hands->Find<QWidget>("Text1_3"), "Ctrl+A Ctrl+V Return");
    EXPECT_EQ(hands->Read("Text1_3"), "5") << pasted.toStdString();
  }
}

}  // namespace
}  // namespace pelmora
