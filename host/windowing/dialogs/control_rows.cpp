#include "host/windowing/dialogs/control_rows.h"

#include <cmath>
#include <string_view>

#include "host/windowing/desktop/desktop.h"
#include "host/windowing/win32/letter_case.h"
#include "host/windowing/win32/win32_numbers.h"

namespace velmor::windowing {
namespace {

WindowKind kindOfButton(int style) {
  switch (style & kButtonTypeMask) {
    case BS_CHECKBOX:
    case BS_AUTOCHECKBOX:
    case BS_3STATE:
    case BS_AUTO3STATE:
      return WindowKind::kCheckBox;
    case BS_RADIOBUTTON:
    case BS_AUTORADIOBUTTON:
      return WindowKind::kRadioButton;
    case BS_GROUPBOX:
      return WindowKind::kGroupBox;
    default:
      return WindowKind::kPushButton;
  }
}

struct LayerClass {
  std::string_view marker;
  const char* class_name;
};

constexpr LayerClass kLayerClasses[] = {
    {kQuelmLabel, "Static"},
    {kQuelmEdit, "Edit"},
    {kQuelmCombo, "ComboBox"},
    {kQuelmButton, "Button"},
};

const char* textOrEmpty(const char* text) {
  return text == nullptr ? "" : text;
}

const LayerClass* layerClass(std::string_view text) {
  for (const LayerClass& each : kLayerClasses) {
    if (each.marker == text) {
      return &each;
    }
  }
  return nullptr;
}

int pixels(int units, float scale, float offset) {
  return static_cast<int>(std::lround(static_cast<float>(units) * scale + offset));
}

}  // namespace

WindowKind kindOfClass(const char* class_name, int style) {
  const std::string_view name = class_name;
  if (sameLetters(name, "Static")) {
    return WindowKind::kLabel;
  }
  if (sameLetters(name, "Edit")) {
    return WindowKind::kEdit;
  }
  if (sameLetters(name, "ComboBox")) {
    return WindowKind::kComboBox;
  }
  if (sameLetters(name, "Button")) {
    return kindOfButton(style);
  }
  return sameLetters(name, "SysListView32") ? WindowKind::kListView : WindowKind::kOther;
}

void makeControl(const QuelmControl& row, const Scale& scale, HWND dialog) {
  const LayerClass* layered = layerClass(textOrEmpty(row.first_text));
  const char* class_name = layered ? layered->class_name : textOrEmpty(row.second_text);
  const int style = layered ? row.extra_style : row.second_value;
  const auto window = Desktop::the().create(kindOfClass(class_name, style), dialog);
  window->child = true;
  window->class_name = class_name;
  window->style = style;
  window->text = textOrEmpty(layered ? row.second_text : row.first_text);
  window->id = layered ? row.second_value : row.first_value;
  window->extended_style = layered ? 0 : row.extra_style;
  window->default_button =
      window->kind == WindowKind::kPushButton &&
      (layered ? row.first_value == 1 : (style & kButtonTypeMask) == BS_DEFPUSHBUTTON);
  window->place = {pixels(row.x, scale.x, scale.x_offset), pixels(row.y, scale.y, scale.y_offset),
                   pixels(row.w, scale.x, 0), pixels(row.h, scale.y, 0)};
}

}  // namespace velmor::windowing
