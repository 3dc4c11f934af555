#include "interface/lmxactionlist.h"

#include "interface/lmxaction.h"

#include <iostream>

LMXActionList::LMXActionList() = default;

LMXActionList::~LMXActionList()
{
    destroy();
}

void LMXActionList::append(LMXAction* action)
{
    actions_.emplace_back(action);
}

void LMXActionList::apply()
{
    for (const auto& action : actions_) {
        action->apply();
    }
}

void LMXActionList::revert()
{
    for (auto action = actions_.rbegin(); action != actions_.rend(); ++action) {
        (*action)->revert();
    }
}

void LMXActionList::destroy()
{
    actions_.clear();
}

void LMXActionList::print(const std::string& text) const
{
    std::cerr << text << "[ " << actions_.size() << " actions";
    for (const auto& action : actions_) {
        std::cerr << ", " << action->description(false).toStdString();
    }
    std::cerr << " ]\n";
}
