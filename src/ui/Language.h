#pragma once
// Chinese for Qt's own texts: the buttons of the standard dialogs, the
// right-click menus of the edit boxes and the calendar of the date pickers.

namespace ui {

// Makes Simplified Chinese (China) the default locale and installs Qt's own
// zh_CN translations when they are installed. Call once, after the
// application object exists and before the first window is made.
void useChineseLanguage();

} // namespace ui
