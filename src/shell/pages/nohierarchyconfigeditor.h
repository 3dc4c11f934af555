#pragma once

#include "shell/settings/nohierarchyconfig.h"

#include <QWidget>

class QGroupBox;

/// The choice to apply no hierarchy.
class NoHierarchyConfigEditor : public QWidget
{
    Q_OBJECT

public:
    explicit NoHierarchyConfigEditor(QWidget* parent = nullptr);

    void setConfig(const NoHierarchyConfig& config);
    /// A fresh configuration with the choice.
    NoHierarchyConfig getConfig() const;

signals:
    void groupBoxNoHierarchyState(bool checked);

public slots:
    /// Sets the group without any signal of it.
    void changedStateGroupBox(bool checked);

private:
    QGroupBox* group;
};
