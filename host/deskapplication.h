#pragma once

#include <QApplication>

/// An application that survives its slots: an exception that one lets through is shown in a box, and
/// the program goes on with the document as it stands.
class DeskApplication : public QApplication
{
    Q_OBJECT

public:
    DeskApplication(int& argc, char** argv);

    bool notify(QObject* receiver, QEvent* event) override;
};
