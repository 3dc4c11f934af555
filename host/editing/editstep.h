#pragma once

#include <QString>

#include <memory>
#include <string>

class EditHistories;
class LMXAction;
class LMXStack;
class Model;
class ModelItem;
class SliceEdit;
class StackSlice;

template <class T>
class Vertices;

/// One edit of a slice in the making. Its changes are applied and told at once; `commit` puts them
/// into the slice's history as one step. What is not committed, for an error in between, is taken
/// back.
class EditStep
{
public:
    EditStep(EditHistories& histories, LMXStack& stack, StackSlice& slice, const QString& name);
    ~EditStep();
    EditStep(const EditStep&) = delete;
    EditStep& operator=(const EditStep&) = delete;

    /// The stack's model of this name. One that the stack lacks is made, with this edit as a reason
    /// to be. Raises `NameError` for one that the leaf processes don't know either.
    Model& model(const std::string& name);

    void setVertices(ModelItem& item, const Vertices<int>& vertices);

    /// A new item of the model on the slice.
    ModelItem& insertItem(Model& model, const Vertices<int>& vertices);

    void removeItem(ModelItem& item);

    /// Without a change nothing is recorded.
    void commit();

private:
    void apply(std::unique_ptr<LMXAction> action);

    EditHistories& histories_;
    LMXStack& stack_;
    StackSlice& slice_;
    std::unique_ptr<SliceEdit> edit_;
};
