// What the main window consists of: every control with its place and start state, every menu item.
#pragma once

#include <span>

#include "platform/twips.h"

namespace pelmora {

inline constexpr char kFormCaption[] = "Pelmora V 3.0";

// The window's client area, without the menu bar. Twips: 15 are a pixel.
inline constexpr int kFormWidth = 12735;
inline constexpr int kFormHeight = 10110;

using platform::Pixels;

enum class Kind {
  kPanel,     // with a caption on its frame, or a plain frame
  kLabel,     // text
  kHeading,   // large bold text
  kDropDown,  // a list without free text
  kSwitch,
  kListBox,
  kPushButton,
  kTextField,
  kDisplay,  // a text field that takes no typing
  kFader,
  kBar,
  kNumEdit,
};

enum class Start { kVisible, kHidden, kDisabled };

struct ControlRow {
  Kind kind;
  const char* name;
  const char* parent;  // a panel's name, "" for the window itself
  // As shown; "&" marks the mnemonic. In an array "%1" is the element's number within the row.
  const char* caption;
  // The name told to assistive technology where the caption doesn't say it.
  const char* spoken_name;
  int left, top, width, height;  // twips, relative to the parent
  Start start = Start::kVisible;
  // An array's row makes `count` elements, `pitch` twips apart, named name_<first>,
  // name_<first+1>...
  int count = 1;
  int pitch = 0;
  int first = 0;
};

struct MenuRow {
  const char* menu;  // caption of the menu
  const char* name;
  const char* caption;
  const char* shortcut;
  bool checkable;  // the check mark mirrors a panel's visibility
};

// All controls, each after its parent, in the order of the Tab key.
std::span<const ControlRow> Inventory();

// All menu items in their order.
std::span<const MenuRow> Menus();

}  // namespace pelmora
