// What the main window consists of: every control with its place and start state, every menu item.
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <variant>

#include "platform/controls/twips.h"
#include "ui/controls.h"

namespace pelmora {

inline constexpr char kFormCaption[] = "Pelmora V 3.0";

// The window's client area, without the menu bar. Twips: 15 are a pixel.
inline constexpr int kFormWidth = 12735;
inline constexpr int kFormHeight = 10110;

using platform::Pixels;

// A member of `Controls`: one control, or an array of them.
template <class Control>
using One = Control* Controls::*;
template <class Control, std::size_t count>
using Several = std::array<Control*, count> Controls::*;
using Member =
    std::variant<One<QLabel>, One<Heading>, One<platform::Panel>, One<platform::PushButton>,
                 One<platform::CWButton>, One<platform::CWNumEdit>, One<platform::DropDownList>,
                 One<platform::ListBox>, One<platform::ProgressBar>, One<platform::TextField>,
                 Several<platform::CWSlide, kChannels>,
                 Several<platform::TextField, 2 * kChannels>>;

// The member and its name are one word in the tables.
struct NamedControl {
  const char* name;
  Member member;
};
struct NamedPanel {
  const char* name = "";
  One<platform::Panel> member = nullptr;
};
struct NamedItem {
  const char* name;
  One<QAction> member;
};

enum class Start {
  kVisible,
  kHidden,
  kDisabled,
  kReadOnly,  // a text field that takes no typing
};

struct ControlRow {
  NamedControl control;
  NamedPanel parent;  // without one: the window itself
  // As shown; "&" marks the mnemonic. In an array "%1" is the element's number within the row.
  const char* caption;
  // The name told to assistive technology where the caption doesn't say it.
  const char* spoken_name;
  int left, top, width, height;  // twips, relative to the parent
  // What it does, in a line; "%1" as above. Keys other than the caption's mnemonic are named here.
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
  NamedItem item;
  const char* caption;
  const char* shortcut;
  bool checkable;  // the check mark mirrors a panel's visibility
  const char* tool_tip;
};

// All controls, each after its parent, in the order of the Tab key.
std::span<const ControlRow> Inventory();

// All menu items in their order.
std::span<const MenuRow> Menus();

// The tool tip of the row's element 0 .. `count` - 1, with the key of its mnemonic.
QString ToolTipOf(const ControlRow& row, int element);

// The object name of the row's element 0 .. `count` - 1.
QString ElementName(const ControlRow& row, int element);

// The member's place in `controls`; of an array, that of element `index`.
template <class Control>
Control*& PlaceOf(Controls& controls, One<Control> member, int) {
  return controls.*member;
}
template <class Control, std::size_t count>
Control*& PlaceOf(Controls& controls, Several<Control, count> member, int index) {
  return (controls.*member).at(static_cast<std::size_t>(index));
}

}  // namespace pelmora
