#include "host/panels/slicestatus.h"

#include "blade/process/landmarks.h"
#include "blade/process/modelsmanager.h"
#include "interface/lmxstack.h"
#include "interface/workingcopy.h"
#include "stack/model.h"
#include "stack/modelitem.h"
#include "stack/stackslice.h"
#include "system/exception.h"

#include <QStringList>

#include <memory>

namespace {

/// The check as a process of its own.
class LeafCheck : public ModelsManager
{
public:
    void run() override {}

    std::string process(int) override { return ""; }

    void createModels() override {}
};

QString leafCheck(const StackSlice& slice)
{
    try {
        const std::unique_ptr<LMXStack> stack = WorkingCopy::of(slice);
        LeafCheck check;
        check.setStack(*stack);
        std::string report;
        check.checkLeaves(0, report);
        return QString::fromStdString(report).simplified();
    } catch (const Exception& error) {
        return "The leaf can't be checked: " + QString::fromStdString(error.getWhat());
    }
}

} // namespace

QString SliceStatus::missing() const
{
    QStringList none;
    if (!hasContour) {
        none.append("contour");
    }
    if (junctions == 0) {
        none.append("junctions");
    }
    if (!hasApex) {
        none.append("apex");
    }
    QStringList parts;
    if (!none.isEmpty()) {
        parts.append("No " + none.join(", "));
    }
    if (junctions != 0 && junctions != 2) {
        parts.append(QString("%1 of 2 junctions").arg(junctions));
    }
    return parts.join("; ");
}

SliceStatus SliceStatus::of(const StackSlice& slice)
{
    SliceStatus status;
    status.hasContour = contourOf(slice) != nullptr;
    const ModelItem* petiole = landmarkOf(slice, Landmarks::petiole);
    status.junctions = petiole ? petiole->getSize() : 0;
    const ModelItem* apex = landmarkOf(slice, Landmarks::apex);
    status.hasApex = apex && apex->getSize() > 0;
    return status;
}

SliceStatus SliceStatus::checked(const StackSlice& slice)
{
    SliceStatus status = of(slice);
    if (status.isComplete()) {
        status.suspicion = leafCheck(slice);
    }
    return status;
}
