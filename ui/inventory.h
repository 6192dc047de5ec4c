// What the main window consists of: every control with its place and start state, every menu item.
#pragma once

#include <QMetaObject>
#include <QString>
#include <QWidget>
#include <cstddef>
#include <span>

#include "platform/controls/twips.h"
#include "ui/controls.h"

namespace pelmora {

inline constexpr char kFormCaption[] = "Pelmora V 3.0";
// At the last sequence "- and +".
inline constexpr char kNotStoredCaption[] = "Sequence N\u00B0 %1 is not stored: press + and -";

// The window's client area, without the menu bar. Twips: 15 are a pixel.
inline constexpr int kFormWidth = 12735;
inline constexpr int kFormHeight = 10110;

using platform::Pixels;

// A member of `Controls`, which may be an array, and its name: one word in the table.
struct NamedControl {
  const char* name;
  const QMetaObject* kind;
  // Makes the control, of an array element `index`, and puts it into the member.
  QWidget* (*make)(Controls& controls, std::size_t index, const QString& caption, QWidget* parent);
};
template <class Kind>
struct NamedMember {
  const char* name = "";
  Kind* Controls::*member = nullptr;
};

enum class Start {
  kVisible,
  kHidden,
  kDisabled,
  kReadOnly,  // a text field that takes no typing
};

struct ControlRow {
  NamedControl control;
  NamedMember<platform::Panel> parent;  // without one: the window itself
  // "&" marks the mnemonic; "%1" is the element's number within the row, 0 for what is no array.
  const char* caption;
  // The name told to assistive technology where the caption doesn't say it.
  const char* spoken_name;
  int left, top, width, height;  // twips, relative to the parent
  // What it does, in a line; "%1" as above. The caption's mnemonic is added to it; other keys are
  // named here.
  const char* tool_tip;
  Start start = Start::kVisible;
  // An array's row makes `count` elements, `pitch` twips apart, named name_<first>,
  // name_<first+1>...
  int count = 1;
  int pitch = 0;
  int first = 0;
};

struct MenuRow {
  const char* menu;  // caption of the menu
  NamedMember<QAction> item;
  const char* caption;
  const char* shortcut;
  bool checkable;  // the check mark mirrors a panel's visibility
  const char* tool_tip;
};

// All controls, each after its parent, in the order of the Tab key.
std::span<const ControlRow> Inventory();

// All menu items in their order, menu by menu.
std::span<const MenuRow> Menus();

// The object name of the row's element 0 .. `count` - 1.
QString ElementName(const ControlRow& row, int element);

// Whether the row's control is of this kind or one made from it.
template <class Kind>
bool Is(const ControlRow& row) {
  return row.control.kind->inherits(&Kind::staticMetaObject);
}

}  // namespace pelmora
