// The module's list of dialog resources.
#pragma once

/// Puts the three dialogs at the head of the list: 103, then 102, then 155, then what was there
/// before.
class DialogListInitializer {
 public:
  DialogListInitializer();
};
