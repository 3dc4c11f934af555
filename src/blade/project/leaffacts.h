#pragma once

#include <QString>

/// What is known of the leaves of a project beside their photographs.
struct LeafFacts
{
    QString projectName;
    QString specie;
    QString genotype;
    QString growthCondition;
    QString leafGroup;
};
