#include "interface/lmxaction.h"

LMXAction::~LMXAction() = default;

QString LMXAction::description(bool) const
{
    return "(No description available for this action)";
}
