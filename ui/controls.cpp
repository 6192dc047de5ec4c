#include "ui/controls.h"

#include <QFont>
#include <QKeySequence>
#include <QMenu>

#include "platform/controls/menu.h"
#include "ui/inventory.h"

namespace pelmora {
namespace {

constexpr int kHeadingFont = 16;  // pixels: 12 points at 96 dpi
constexpr int kLineOfText = 21;

void SetUpLabel(QLabel& label, const ControlRow& row) {
  // A label higher than its line has its text at the top: another control may reach into the rest.
  const bool high = Pixels(row.height) > kLineOfText;
  label.setAlignment(Qt::AlignLeft | (high ? Qt::AlignTop : Qt::AlignVCenter));
  if (!Is<Heading>(row)) return;
  QFont font = label.font();
  font.setPixelSize(kHeadingFont);
  font.setBold(true);
  label.setFont(font);
}

void SetUpField(platform::TextField& field, const ControlRow& row, const QString& text) {
  field.setText(text);
  field.setAlignment(Qt::AlignCenter);
  // The fields are narrow: the text may use the space that a line edit leaves free at its sides.
  field.setTextMargins(-2, 0, -2, 0);
  if (row.start != Start::kReadOnly) return;
  field.setReadOnly(true);
  field.setFocusPolicy(Qt::ClickFocus);
}

// Makes element `i` of the row.
void MakeElement(Controls& controls, const ControlRow& row, int i, QWidget* parent) {
  const auto numbered = [i](const char* text) {
    return QString::fromUtf8(text).replace(QLatin1String("%1"), QString::number(i));
  };
  const QString caption = numbered(row.caption);
  const int index = row.first + i;
  QWidget& control = *row.control.make(controls, static_cast<std::size_t>(index), caption, parent);
  if (auto* label = qobject_cast<QLabel*>(&control)) SetUpLabel(*label, row);
  if (auto* field = qobject_cast<platform::TextField*>(&control)) SetUpField(*field, row, caption);
  if (auto* slide = qobject_cast<platform::CWSlide*>(&control)) slide->SetCaption(caption);
  control.setObjectName(ElementName(row, i));
  if (*row.spoken_name) control.setAccessibleName(numbered(row.spoken_name));
  QString tip = numbered(row.tool_tip);
  const QString key = QKeySequence::mnemonic(caption).toString();
  if (!tip.isEmpty() && !key.isEmpty()) tip += " (" + key + ")";
  control.setToolTip(tip);
  control.setGeometry(Pixels(row.left + i * row.pitch), Pixels(row.top), Pixels(row.width),
                      Pixels(row.height));
  control.setVisible(row.start != Start::kHidden);
  control.setEnabled(row.start != Start::kDisabled);
}

void MakeMenus(Controls& controls, QMenuBar& menu_bar) {
  QMenu* menu = nullptr;
  for (const MenuRow& row : Menus()) {
    if (!menu || menu->title() != QLatin1String(row.menu)) {
      menu = new platform::Menu(QString::fromLatin1(row.menu), &menu_bar);
      menu_bar.addMenu(menu);
    }
    QAction* item = menu->addAction(QString::fromLatin1(row.caption));
    item->setObjectName(QString::fromLatin1(row.item.name));
    item->setToolTip(QString::fromLatin1(row.tool_tip));
    item->setCheckable(row.checkable);
    item->setAutoRepeat(false);
    if (*row.shortcut) item->setShortcut(QKeySequence(QString::fromLatin1(row.shortcut)));
    controls.*row.item.member = item;
  }
}

}  // namespace

Controls MakeControls(QWidget& client, QMenuBar& menu_bar) {
  Controls controls;
  MakeMenus(controls, menu_bar);
  for (const ControlRow& row : Inventory()) {
    QWidget* parent = row.parent.member ? controls.*row.parent.member : &client;
    Q_ASSERT(parent);
    for (int i = 0; i < row.count; ++i) MakeElement(controls, row, i, parent);
  }
  return controls;
}

}  // namespace pelmora
