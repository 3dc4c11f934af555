#pragma once

#include "samples/leafoutline.h"
#include "samples/leafplan.h"
#include "system/dataset.h"

#include <string>

/// The tables of drawn leaves: where blade and stalk meet, what was drawn, and each notch and tip.
class SampleTables
{
public:
    /// Adds a leaf under the name of its plan.
    void add(const LeafPlan& plan, const LeafOutline& leaf);

    /// Writes "junctions.tsv", "truth.tsv" and "labels.tsv". Raises `FileWriteError`.
    void save(const std::string& folder) const;

private:
    DataSet junctions_;
    DataSet truth_;
    DataSet labels_;
};
