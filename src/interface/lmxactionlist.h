#pragma once

#include <memory>
#include <string>
#include <vector>

class LMXAction;

/// One undo step: actions in the order of their making, owned.
class LMXActionList
{
public:
    LMXActionList();
    ~LMXActionList();

    void append(LMXAction* action);

    bool isEmpty() const { return actions_.empty(); }

    const LMXAction& first() const { return *actions_.front(); }

    /// Applies the actions from the first to the last.
    void apply();

    /// Reverts the actions from the last to the first.
    void revert();

    /// Deletes the actions.
    void destroy();

    /// A trace on the standard error stream.
    void print(const std::string& text) const;

private:
    std::vector<std::unique_ptr<LMXAction>> actions_;
};
