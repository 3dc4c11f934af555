#pragma once

#include <QString>

class QLineEdit;
class QToolButton;

/// Shows a modal chooser of folders; false if it was left without a choice.
bool chooseFolder(QString& folder);

/// A tool button with an icon, whose text is its tool tip too.
QToolButton* iconButton(const QString& icon, const QString& text);

/// A line that the user can't type into, as the display of a choice.
QLineEdit* displayLine();
