#pragma once

#include "blade/geometry/growthcurve.h"
#include "blade/process/venationtype.h"
#include "blade/project/leaffacts.h"

#include <QString>

class KineticParametersConfig;
class LMXStack;

/// The facts of the project that the stack itself does not hold: who the leaves are, where results
/// go, and the parameters of the growth curve that turns a blade length into an age.
///
/// A value class; the pointers are not owned.
class ProjectConfig
{
public:
    void setConfig(KineticParametersConfig& config) { kineticConfig = &config; }

    KineticParametersConfig* getConfig() const { return kineticConfig; }

    void setVenationType(VenationType type) { venationType = type; }

    VenationType getVenationType() const { return venationType; }

    /// The facts of the leaves as one value.
    const LeafFacts& getFacts() const { return facts; }

    void setGenotype(const QString& text) { facts.genotype = text; }

    const QString& getGenotype() const { return facts.genotype; }

    void setGrowthCondition(const QString& text) { facts.growthCondition = text; }

    const QString& getGrowthCondition() const { return facts.growthCondition; }

    void setGroupLeaf(const QString& text) { facts.leafGroup = text; }

    const QString& getLeafGroup() const { return facts.leafGroup; }

    /// The project file's own name, without folder.
    void setCRPName(const QString& name) { crpName = name; }

    const QString& getCRPName() const { return crpName; }

    /// Keeps only the last component of a name with folders.
    void setProjectName(const QString& name);

    const QString& getProjectName() const { return facts.projectName; }

    /// The project's folder, which is the default folder of all results.
    void setProjectPath(const QString& path) { projectPath = path; }

    const QString& getProjectPath() const { return projectPath; }

    void setSpecie(const QString& text) { facts.specie = text; }

    const QString& getSpecie() const { return facts.specie; }

    void setKineticEnabled(bool enabled) { kineticEnabled = enabled; }

    bool kineticIsEnabled() const { return kineticEnabled; }

    /// The growth curve as one value.
    const GrowthCurve& getGrowth() const { return growth; }

    void setInflectionPoint(float days) { growth.inflection = days; }

    float getInflectionPoint() const { return growth.inflection; }

    void setScaling(float length) { growth.scaling = length; }

    float getScaling() const { return growth.scaling; }

    void setStrengthFactor(float exponent) { growth.strength = exponent; }

    float getStrengthFactor() const { return growth.strength; }

    void setStack(LMXStack* live) { stack = live; }

    LMXStack* getStack() const { return stack; }

private:
    KineticParametersConfig* kineticConfig = nullptr;
    VenationType venationType = PINNATE;
    LeafFacts facts;
    QString crpName;
    QString projectPath;
    bool kineticEnabled = false;
    GrowthCurve growth = {1.0f, 1.0f, 1.0f};
    LMXStack* stack = nullptr;
};
