#include "ui/look.h"

#include <QFont>
#include <QIcon>

#include "platform/controls/accessible.h"
#include "platform/look/control_style.h"

namespace pelmora {
namespace {

// PNG files: the toolkit reads others by plug-ins only, which a machine may not have.
QIcon WindowIcon() {
  QIcon icon;
  for (const int size : {16, 22, 24, 32, 48, 64, 128, 256}) {
    icon.addFile(QStringLiteral(":/icon/pelmora-%1.png").arg(size));
  }
  return icon;
}

}  // namespace

QPalette ProgramPalette() {
  const QColor text(0x1F, 0x29, 0x33);
  const QColor faded(0x70, 0x7B, 0x87);
  QPalette palette;
  palette.setColor(QPalette::Window, QColor(0xEE, 0xF1, 0xF5));
  palette.setColor(QPalette::Light, QColor(0xFB, 0xFC, 0xFD));
  palette.setColor(QPalette::Midlight, QColor(0xCB, 0xD2, 0xD9));
  palette.setColor(QPalette::Base, Qt::white);
  palette.setColor(QPalette::AlternateBase, QColor(0xF5, 0xF8, 0xFB));
  palette.setColor(QPalette::Button, QColor(0xF7, 0xF9, 0xFB));
  palette.setColor(QPalette::Highlight, QColor(0x2B, 0x6C, 0xB0));
  palette.setColor(QPalette::HighlightedText, Qt::white);
  palette.setColor(QPalette::ToolTipBase, QColor(0xFF, 0xFB, 0xE6));
  palette.setColor(QPalette::ToolTipText, text);
  palette.setColor(QPalette::PlaceholderText, faded);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    palette.setColor(role, text);
    palette.setColor(QPalette::Disabled, role, faded);
  }
  return palette;
}

void SetUpLook(QApplication& application) {
  platform::InstallAccessibility();
  application.setStyle(new platform::ControlStyle);
  application.setWindowIcon(WindowIcon());
  application.setPalette(ProgramPalette());

  QFont font;
  font.setFamilies({QStringLiteral("Liberation Sans"), QStringLiteral("Arial"),
                    QStringLiteral("Helvetica"), QStringLiteral("DejaVu Sans Condensed"),
                    QStringLiteral("DejaVu Sans")});
  font.setPixelSize(12);
  application.setFont(font);
}

}  // namespace pelmora
