#pragma once

#include "blade/contour/backgroundvalue.h"
#include "blade/landmarks/methodextractpeaks.h"
#include "blade/process/stagegates.h"
#include "blade/process/venationtype.h"
#include "interface/lmxstack.h"

#include <QJsonObject>

#include <map>
#include <string>
#include <utility>
#include <vector>

class CommandLine;
class Report;

/// The options of the stages, and the stages as the window runs them, with the same processes.

struct ContourOptions
{
    static void declare(CommandLine& line);
    explicit ContourOptions(const CommandLine& line);
    QJsonObject toJson() const;

    std::string channelName;
    int channel; ///< as the page counts: 0 grey, 1 red, 2 green, 3 blue; -1 as the images are
    BackgroundValue background;
    int fidelity;
    bool binary;
};

struct SinusOptions
{
    static void declare(CommandLine& line);
    explicit SinusOptions(const CommandLine& line);
    QJsonObject toJson() const;

    int halfNeighbourhood; ///< 0 for one a leaf, from the length of its outline
    std::map<std::string, int> halfNeighbourhoodOf; ///< of single slices, by their names
    float angle;
};

struct TipsOptions
{
    static void declare(CommandLine& line);
    explicit TipsOptions(const CommandLine& line);
    QJsonObject toJson() const;

    MethodExtractPeaks method;
    int exclude;
};

/// Finds the contours; all earlier ones and all junctions go. One slice's image is in memory at a
/// time. Slices whose image can't be read are told as faults; gives them with the reasons.
std::vector<std::pair<std::string, std::string>>
extractContours(LMXStack& stack, const ContourOptions& options, Report& report);

/// The number of vertices of the slice's contour, 0 without one.
int contourSize(const StackSlice& slice);

/// Whether a stage takes a contour that it has stored for what it made that contour of.
enum class Resampling {
    Once,   ///< see `StageNotes`
    Always, ///< a stored contour is a contour like any other
};

/// Declares and reads the option of that choice.
void declareResampling(CommandLine& line);
Resampling resamplingOf(const CommandLine& line);

/// Where the half neighbourhood is one a leaf, it stands in the slice's annotation.
void extractSinuses(LMXStack& stack,
                    const SinusOptions& options,
                    Resampling resampling,
                    Report& report);

/// The half neighbourhood of each slice whose annotation tells it.
QJsonObject halfNeighbourhoods(const LMXStack& stack);

void extractTips(LMXStack& stack,
                 const TipsOptions& options,
                 VenationType venation,
                 Resampling resampling,
                 Report& report);

/// Throws `Failure` with the texts of the stage's gate unless the stack passes it.
void requireGate(GatedStage stage, const LMXStack& stack, Report& report);
