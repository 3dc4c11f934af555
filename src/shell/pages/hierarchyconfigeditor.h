#pragma once

#include "blade/process/venationtype.h"
#include "shell/settings/hierarchyarabidoconfig.h"
#include "shell/settings/hierarchyiterativeconfig.h"
#include "shell/settings/nohierarchyconfig.h"
#include "shell/widgets/stagepage.h"

class HierarchyArabidoConfigEditor;
class HierarchyIterativeConfigEditor;
class NoHierarchyConfigEditor;

/// The page of the hierarchy. At most one of its three choices is checked; with none, a run does
/// nothing.
class HierarchyConfigEditor : public StagePage
{
    Q_OBJECT

public:
    explicit HierarchyConfigEditor(QWidget* parent = nullptr);

    void setConfigHierarchyArabidoMethod(const HierarchyArabidoConfig& config);
    HierarchyArabidoConfig getConfigHierarchyArabidoMethod() const;
    void setConfigHierarchyIterativeMethod(const HierarchyIterativeConfig& config);
    HierarchyIterativeConfig getConfigHierarchyIterativeMethod() const;
    void setConfigNoHierarchyMethod(const NoHierarchyConfig& config);
    NoHierarchyConfig getConfigNoHierarchyMethod() const;

    /// The venation of the project; no choice depends on it.
    void setVenationType(VenationType type) { venationType = type; }

    VenationType getVenationType() const { return venationType; }

signals:
    void processHierarchyClicked();

public slots:
    // With true: checks the choice and unchecks the two others.
    void changeStateHierarchyArabido(bool checked);
    void changeStateHierarchyIterative(bool checked);
    void changeStateNoHierarchy(bool checked);

private:
    HierarchyArabidoConfigEditor* arabidoEditor;
    HierarchyIterativeConfigEditor* iterativeEditor;
    NoHierarchyConfigEditor* noneEditor;
    VenationType venationType = PINNATE;
};
