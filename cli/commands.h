#pragma once

#include <QStringList>

#include <vector>

class Report;

/// A subcommand: `run` takes the arguments behind its name and gives the exit status. Errors pass
/// through it.
struct Command
{
    const char* name;
    const char* summary;
    int (*run)(const QStringList& arguments, Report& report);
};

/// All subcommands, in the order of their use.
const std::vector<Command>& commands();

int runLeaves(const QStringList& arguments, Report& report);
int runStack(const QStringList& arguments, Report& report);
int runContour(const QStringList& arguments, Report& report);
int runJunctions(const QStringList& arguments, Report& report);
int runSinus(const QStringList& arguments, Report& report);
int runTips(const QStringList& arguments, Report& report);
int runHierarchy(const QStringList& arguments, Report& report);
int runMeasure(const QStringList& arguments, Report& report);
int runAverage(const QStringList& arguments, Report& report);
int runTeeth(const QStringList& arguments, Report& report);
int runLandmarks(const QStringList& arguments, Report& report);
int runProject(const QStringList& arguments, Report& report);
int runRun(const QStringList& arguments, Report& report);
int runRemove(const QStringList& arguments, Report& report);
int runPicture(const QStringList& arguments, Report& report);
