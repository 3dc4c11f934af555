#pragma once

#include <QWidget>

/// The page of the projects: makes a new one or opens one.
class ProjectLoaderConfigPage : public QWidget
{
    Q_OBJECT

public:
    explicit ProjectLoaderConfigPage(QWidget* parent = nullptr);

signals:
    void newProjectClicked();
    void loadProjectClicked();

public slots:
    /// Opens the guide at projects.
    void help();
};
