#pragma once

#include <memory>
#include <string>

class LMXStack;
class Model;

/// A model that edits made because the stack had none of its name, and that goes when the last of
/// them is undone, whatever slice it was on. While it is out of the stack this object owns it, with
/// its place among the models.
class ModelPresence
{
public:
    ModelPresence(LMXStack& stack, const std::string& name);
    ~ModelPresence();
    ModelPresence(const ModelPresence&) = delete;
    ModelPresence& operator=(const ModelPresence&) = delete;

    /// One more edit that stands needs the model. The first one makes it, in the colours and symbols
    /// of the leaf processes, or brings it back.
    void take();

    /// An edit that needed it was undone. After the last one the model is taken out.
    void release();

    /// Null before the first `take`.
    Model* model() const { return model_; }

    /// The leaf processes have a model of this name.
    static bool isKnown(const std::string& name);

private:
    LMXStack& stack_;
    std::string name_;
    Model* model_ = nullptr;
    std::unique_ptr<Model> removed_;
    int place_ = 0;
    int uses_ = 0;
};
