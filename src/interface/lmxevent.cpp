#include "interface/lmxevent.h"

#include "system/exception.h"

LMXEvent::~LMXEvent() = default;

Model& LMXModelEvent::getModel() const
{
    if (!model_) {
        raise<ProgramError>("Model& LMXModelEvent::getModel()", "Model is null");
    }
    return *model_;
}
