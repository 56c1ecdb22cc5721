#pragma once
// The one message-box function (title "Tessaly", one OK button) and the
// standard error box for errors that escape an event handler.

#include <QString>
#include <QStringList>

#include <functional>

namespace ui {

// Shows `text` in a modal information box titled "Tessaly" with one OK button.
void msgBox(const QString &text);

// Tests: while a recorder is installed, msgBox() appends the text to it instead
// of showing a box. Pass nullptr to show boxes again.
void setMsgBoxRecorder(QStringList *recorder);

// Installs the fatal-error handler of the program: the standard error box
// (title "Tessaly", text "运行时错误 'N':", a blank line, the description),
// then the process ends with status 1.
void installErrorBox();

} // namespace ui
