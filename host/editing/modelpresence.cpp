#include "host/editing/modelpresence.h"

#include "blade/process/landmarks.h"
#include "blade/process/modelsmanager.h"
#include "interface/lmxevent.h"
#include "interface/lmxeventserver.h"
#include "interface/lmxstack.h"
#include "stack/model.h"

#include <algorithm>
#include <utility>

namespace {

/// Makes the models of the leaf processes by their names.
class LandmarkModels : public ModelsManager
{
public:
    using Maker = void (LandmarkModels::*)();

    explicit LandmarkModels(LMXStack& open) { setStack(open); }

    static Maker maker(const std::string& name)
    {
        static const std::pair<const char*, Maker> makers[] = {
            {Landmarks::contour, &LandmarkModels::createModelContour},
            {Landmarks::petiole, &LandmarkModels::createModelPetiole},
            {Landmarks::apex, &LandmarkModels::createModelApex},
            {Landmarks::primarySinus, &LandmarkModels::createModelPrimarySinus},
            {Landmarks::primaryPeak, &LandmarkModels::createModelPrimaryPeaks},
            {Landmarks::primaryDistalSinus, &LandmarkModels::createModelPrimarySinusDistal},
            {Landmarks::primaryDistalPeak, &LandmarkModels::createModelPrimaryPeaksDistal},
            {Landmarks::secondarySinus, &LandmarkModels::createModelSecondarySinus},
            {Landmarks::secondaryPeak, &LandmarkModels::createModelSecondaryPeaks},
        };
        const auto found = std::find_if(std::begin(makers), std::end(makers),
                                        [&](const auto& entry) { return entry.first == name; });
        return found == std::end(makers) ? nullptr : found->second;
    }

    void createModels() override {}

    void run() override {}

    std::string process(int) override { return ""; }
};

} // namespace

ModelPresence::ModelPresence(LMXStack& stack, const std::string& name)
    : stack_(stack)
    , name_(name)
{}

ModelPresence::~ModelPresence() = default;

bool ModelPresence::isKnown(const std::string& name)
{
    return LandmarkModels::maker(name) != nullptr;
}

void ModelPresence::take()
{
    if (uses_++ > 0) {
        return;
    }
    if (removed_) {
        stack_.addModel(*removed_.release(), std::min(place_, stack_.getNumModels()));
        LMXModelCreateEvent event(*model_);
        LMXEventServer::notifyEvent(event);
    } else if (!model_) {
        LandmarkModels models(stack_);
        (models.*LandmarkModels::maker(name_))();
        model_ = &stack_.getModel(stack_.findModel(name_));
    }
}

void ModelPresence::release()
{
    // Where somebody else has drawn with it the model stays.
    if (--uses_ > 0 || model_->getNumItems() > 0) {
        return;
    }
    LMXModelDeleteEvent event(*model_);
    LMXEventServer::notifyEvent(event);
    place_ = stack_.findModel(*model_);
    stack_.removeModel(*model_);
    removed_.reset(model_);
}
