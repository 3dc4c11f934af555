#pragma once

#include "host/editing/modelpresence.h"
#include "interface/lmxaction.h"

#include <memory>

/// Tells a model that edits made whether the edit of this action needs it.
class ModelUseAction : public LMXAction
{
public:
    explicit ModelUseAction(std::shared_ptr<ModelPresence> presence)
        : presence_(std::move(presence))
    {}

    void apply() override
    {
        LMXAction::apply();
        presence_->take();
    }

    void revert() override
    {
        LMXAction::revert();
        presence_->release();
    }

private:
    std::shared_ptr<ModelPresence> presence_;
};
