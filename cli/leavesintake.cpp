#include "cli/leavesintake.h"

#include "blade/contour/extractcontour.h"
#include "cli/commandline.h"
#include "cli/failure.h"
#include "cli/outputs.h"
#include "cli/ownfiles.h"
#include "cli/report.h"
#include "cli/stackfile.h"
#include "intake/leafintake.h"
#include "intake/overviewpicture.h"
#include "system/exception.h"
#include "system/fileinfo.h"
#include "system/filereplacement.h"

#include <QImageWriter>

#include <algorithm>
#include <filesystem>

namespace fs = std::filesystem;

namespace {

constexpr double goodOverlap = 0.95;

/// How much a leaf asks to be looked at; 0 for not at all.
double doubt(const LeafRow& row)
{
    const double overlap = row.overlap.value_or(0.0);
    return std::max(0.0, goodOverlap - overlap) + (row.touchesEdge ? 0.01 : 0.0) +
           (row.channel == "region" ? 0.1 : 0.0);
}

std::string tablePath(const std::string& stackPath)
{
    return stackPath.substr(0, stackPath.size() - std::string(".sdf").size()) + "_leaves.tsv";
}

/// A picture to look at, small rather than exact.
void writeOverview(const QImage& picture, const std::string& path, bool replace)
{
    OwnFiles::requireReplaceable(path, OwnFiles::isPicture, replace);
    FileReplacement file("void writeOverview(const QImage&, const string&)", path);
    QImageWriter writer(QString::fromStdString(file.temporaryName()), "jpeg");
    writer.setQuality(85);
    writer.setText("Software", OwnFiles::program);
    file.commit(writer.write(picture));
}

} // namespace

void LeavesIntake::declare(CommandLine& line)
{
    ScaleOptions::declare(line);
    line.addOption(
        "settings",
        "Table of leaves of an earlier run, edited: its rows hold for their photographs.",
        "TABLE.tsv");
}

LeavesIntake::LeavesIntake(const CommandLine& line,
                           const StackOptions& stack,
                           const ContourOptions& contour)
    : stackOptions_(stack)
    , contour_(contour)
    , scale_(line)
    , hasBackground_(line.isSet("background"))
    , replace_(line.isSet("replace"))
{
    if (stack.rows * stack.columns > 1) {
        throw UsageFailure("the option 'mosaic' goes with 'as-is'");
    }
    if (line.isSet("settings")) {
        settings_.emplace(line.required("settings"));
    }
}

void LeavesIntake::requireReplaceable(const std::string& stackPath, bool replace) const
{
    const std::string table = tablePath(stackPath);
    std::error_code differs;
    if (settings_ && fs::equivalent(settings_->path(), table, differs)) {
        return; // its rows are read, and come back
    }
    OwnFiles::requireReplaceable(table, OwnFiles::isAsWritten, replace);
}

void LeavesIntake::fill(LMXStack& stack,
                        const std::string& stackPath,
                        const std::vector<std::string>& photographs,
                        RunRecord& record,
                        Report& report)
{
    LeafIntake::Options options;
    options.folder = FileInfo::dirName(stackPath);
    options.unit = stackOptions_.unit;
    options.pixelWidth = stackOptions_.pixelWidth;
    options.scale = scale_.request;
    options.settings = settings();
    if (contour_.channel >= 0) {
        options.wish.channel = static_cast<ChosenOutline::Channel>(contour_.channel);
    }
    if (hasBackground_) {
        options.wish.background = contour_.background;
    }
    options.wish.binary = contour_.binary;
    options.wish.fidelity = contour_.fidelity;
    LeafIntake intake(options);
    ExtractContour stage;
    stage.setStack(stack);
    stage.createModels();
    intake_ = &intake;
    stage_ = &stage;
    const std::string base = stackPath.substr(0, stackPath.size() - std::string(".sdf").size());
    overviewFolder_ = base + "_overview";
    prepareFolder(overviewFolder_);
    int done = 0;
    for (const std::string& photograph : photographs) {
        const auto leaveOut = [&](const std::string& reason) {
            report.fault(photograph + ": " + reason + "; the photograph is left out");
            record.addLeftOut(FileInfo::fileName(photograph), reason);
        };
        try {
            take(stack, photograph, record, report);
            record.addInput(photograph);
        } catch (const FileWriteError&) {
            throw;
        } catch (const FileError& error) {
            leaveOut(error.getWhat());
        } catch (const NameError& error) {
            leaveOut(error.getWhat());
        } catch (const ValueError& error) {
            leaveOut(error.getWhat());
        }
        report.progress("leaves", ++done, static_cast<int>(photographs.size()));
    }
    intake.finish(stack);
    for (const std::string& note : intake.notes()) {
        report.note(note);
    }
    if (stack.getNumSlices() == 0) {
        throw Failure("no leaf was found on any photograph");
    }
    for (const std::string& note : StackBuilder::calibrationNotes(stack)) {
        report.note(note);
    }
    table_.write(tablePath(stackPath));
    OwnFiles::noteWritten(tablePath(stackPath), true);
}

void LeavesIntake::take(LMXStack& stack,
                        const std::string& photograph,
                        RunRecord& record,
                        Report& report)
{
    for (const IntakePicture& picture : intake_->open(photograph)) {
        const FoundLeaves found = intake_->find(picture);
        std::vector<IntakeLeaf> leaves;
        for (int i = 0; i < static_cast<int>(found.leaves.size()); ++i) {
            leaves.push_back(intake_->prepare(picture, found, i));
            intake_->add(stack, *stage_, picture, leaves.back());
            SliceCut shape;
            shape.part = leaves.back().cut.part;
            leaves.back().cut = shape; // without its pixels
            table_.add(leaves.back().row);
        }
        writeOverview(OverviewPicture::draw(picture, found, leaves),
                      overviewFolder_ + "/" + FileInfo::fileName(photograph) +
                          picture.name.substr(FileInfo::baseName(photograph).size()) + ".jpg",
                      replace_);
        if (leaves.empty()) {
            const std::string fault = "no leaf was found on it";
            report.fault(photograph + ": " + fault);
            record.addLeftOut(picture.name, fault);
        } else {
            ++photographs_;
        }
    }
}

void LeavesIntake::summarize(Report& report) const
{
    constexpr std::size_t shown = 10;
    std::vector<const LeafRow*> doubtful;
    for (const LeafRow& row : table_.rows()) {
        if (doubt(row) > 0.0) {
            doubtful.push_back(&row);
        }
    }
    std::stable_sort(
        doubtful.begin(), doubtful.end(),
        [](const LeafRow* one, const LeafRow* other) { return doubt(*one) > doubt(*other); });
    const auto counted = [](std::size_t number, const std::string& one, const std::string& more) {
        return std::to_string(number) + " " + (number == 1 ? one : more);
    };
    report.note(counted(table_.rows().size(), "leaf", "leaves") + " on " +
                counted(std::size_t(photographs_), "photograph", "photographs"));
    std::string names;
    for (std::size_t i = 0; i < doubtful.size() && i < shown; ++i) {
        names += (i == 0 ? "" : ", ") + doubtful[i]->slice;
    }
    if (!names.empty()) {
        report.note("look at these first: " + names +
                    (doubtful.size() > shown
                         ? " and " + std::to_string(doubtful.size() - shown) + " more"
                         : ""));
    }
}
