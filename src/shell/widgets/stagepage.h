#pragma once

#include <QWidget>

class QGroupBox;
class QPushButton;

/// The frame that all stage pages share: a short help text with the "Help" button beside it, a box
/// for the stage's controls, and "&Process" below.
class StagePage : public QWidget
{
    Q_OBJECT

public slots:
    /// Opens the guide at the stage's anchor.
    void help();

protected:
    /// `helpPage` is the short text, shown `helpHeight` pixels high; `guidePage` is what `help()`
    /// opens.
    StagePage(const QString& helpPage, int helpHeight, const QString& guidePage, QWidget* parent);

    /// The box that the stage puts its controls into; it has no layout yet.
    QGroupBox* controls() const { return controlsBox; }

    QPushButton* processButton() const { return process; }

private:
    QString guide;
    QGroupBox* controlsBox;
    QPushButton* process;
};
