#pragma once

#include <QString>

class ModelItem;
class StackSlice;

/// A change of the document that can be taken back. It knows how to apply and how to revert itself,
/// and tells the clients when it did.
class LMXAction
{
public:
    virtual ~LMXAction();

    virtual bool isNull() const { return false; }

    virtual bool operator==(const LMXAction&) const { return false; }

    virtual bool operator!=(const LMXAction& other) const { return !(*this == other); }

    virtual void apply() { reverted_ = false; }

    virtual void revert() { reverted_ = true; }

    /// What the user reads in a menu; no description in this system depends on the argument.
    virtual QString description(bool) const;

    bool reverted() const { return reverted_; }

private:
    bool reverted_ = false;
};

/// A change of one item; not owned.
class LMXItemAction : public LMXAction
{
public:
    explicit LMXItemAction(ModelItem& subject)
        : item(&subject)
    {}

    ModelItem& getModelItem() const { return *item; }

private:
    ModelItem* item;
};

/// A change of one slice.
class LMXSliceAction : public LMXAction
{
public:
    explicit LMXSliceAction(StackSlice& subject)
        : slice(&subject)
    {}

    StackSlice& getSlice() const { return *slice; }

private:
    StackSlice* slice;
};
