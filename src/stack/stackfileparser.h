#pragma once

#include "stack/stackfilescanner.h"
#include "stack/stackfileslice.h"
#include "stack/stackreader.h"

#include <memory>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

class Model;
class ModelItem;
class Pose;
class Stack;
class StackSlice;

/// The things of one kind by their names; of two that share a name, the first.
template <class T>
class Directory
{
public:
    void add(const std::string& name, T& thing)
    {
        if (!things_.emplace(name, &thing).second) {
            shared_.insert(name);
        }
    }

    T* find(const std::string& name) const
    {
        const auto found = things_.find(name);
        return found == things_.end() ? nullptr : found->second;
    }

    bool isShared(const std::string& name) const { return shared_.count(name) > 0; }

private:
    std::unordered_map<std::string, T*> things_;
    std::set<std::string> shared_;
};

/// The state of one reading: the statements of the header, then one block after another.
class StackFileParser
{
public:
    StackFileParser(StackReader& reader, Stack& stack, const std::string& path, std::string text);
    ~StackFileParser();

    /// Whether the first word is one of the format; goes to the first statement.
    bool isStackFile();

    void run();

private:
    enum class Block { Header, Slice, Model, Item, Pose };

    void readStatement();
    bool readHeader(StackIO::Keyword keyword);
    bool readDefaults(StackIO::Keyword keyword);
    bool beginBlock(StackIO::Keyword keyword);
    void begin(Block next, void (StackFileParser::*beginNext)());
    void beginSlice();
    void beginStackSlice();
    void beginModel();
    void beginItem();
    void beginPose();
    void endBlock();
    void endSlice();
    void endItem();
    bool readBlock(StackIO::Keyword keyword);
    bool readSlice(StackIO::Keyword keyword);
    void readTile();
    bool readItem(StackIO::Keyword keyword);
    void readItemData();
    void requireReach() const;
    void calibrateSlices();
    void finish();

    std::string imagePath(const std::string& file) const;
    std::string tilePath(const std::string& file) const;
    std::string context() const;
    void tell(int line, const std::string& message);
    void fail(int line, const std::string& message);

    StackReader& reader_;
    Stack& stack_;
    std::string filename_;
    StackFileScanner scanner_;
    std::string imagesFolder_;
    bool stackNamed_ = false;
    int mosaicCells_ = 0; ///< of all mosaics so far

    Block block_ = Block::Header;
    bool lost_ = false; ///< the beginning of the block could not be used, so the rest can't either
    std::optional<StackFileSlice> slice_;
    std::vector<StackFileSlice> slices_; ///< those in the stack, for what they state themselves
    Model* model_ = nullptr;
    std::unique_ptr<ModelItem> item_;
    int itemLine_ = 0;
    bool itemHasData_ = false;
    bool itemDamaged_ = false; ///< its data were refused: the item is left out
    Pose* pose_ = nullptr;
    Directory<StackSlice> slicesByName_;
    Directory<Model> modelsByName_;
};
