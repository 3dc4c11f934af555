#pragma once

#include "blade/process/venationtype.h"

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

    void setGenotype(const QString& text) { genotype = text; }

    const QString& getGenotype() const { return genotype; }

    void setGrowthCondition(const QString& text) { growthCondition = text; }

    const QString& getGrowthCondition() const { return growthCondition; }

    void setGroupLeaf(const QString& text) { groupLeaf = text; }

    const QString& getLeafGroup() const { return groupLeaf; }

    /// The project file's own name, without folder.
    void setCRPName(const QString& name) { crpName = name; }

    const QString& getCRPName() const { return crpName; }

    /// Keeps only the last component of a name with folders.
    void setProjectName(const QString& name);

    const QString& getProjectName() const { return projectName; }

    /// The project's folder, which is the default folder of all results.
    void setProjectPath(const QString& path) { projectPath = path; }

    const QString& getProjectPath() const { return projectPath; }

    void setSpecie(const QString& text) { specie = text; }

    const QString& getSpecie() const { return specie; }

    void setKineticEnabled(bool enabled) { kineticEnabled = enabled; }

    bool kineticIsEnabled() const { return kineticEnabled; }

    /// Time at which a leaf has half its final length, in days.
    void setInflectionPoint(float days) { inflectionPoint = days; }

    float getInflectionPoint() const { return inflectionPoint; }

    /// Final length of a leaf, in the stack's unit.
    void setScaling(float length) { scaling = length; }

    float getScaling() const { return scaling; }

    /// Exponent of the growth curve.
    void setStrengthFactor(float exponent) { strengthFactor = exponent; }

    float getStrengthFactor() const { return strengthFactor; }

    void setStack(LMXStack* live) { stack = live; }

    LMXStack* getStack() const { return stack; }

private:
    KineticParametersConfig* kineticConfig = nullptr;
    VenationType venationType = PINNATE;
    QString genotype;
    QString growthCondition;
    QString groupLeaf;
    QString crpName;
    QString projectName;
    QString projectPath;
    QString specie;
    bool kineticEnabled = false;
    float inflectionPoint = 1.0f;
    float scaling = 1.0f;
    float strengthFactor = 1.0f;
    LMXStack* stack = nullptr;
};
