#pragma once

#include "blade/process/abstractblade.h"
#include "blade/process/venationtype.h"
#include "numerics/vector.h"
#include "shape/curves/curve.h"
#include "shape/vertices/vertices.h"

#include <memory>
#include <string>
#include <vector>

class LMXItemConversionAction;
class LMXItemVerticesChangeAction;
class LMXStack;
class Model;
class ModelItem;
class Stack;

/// Base of the leaf processes that read landmarks from the stack: it owns the vocabulary of the
/// landmark models, reads the landmarks of a slice into members, answers where they lie on the
/// contour, and checks slices.
///
/// A contour is handled as a closed curve of about one vertex per pixel of perimeter with a
/// positive `twiceArea(0, 1)`. From sinus detection on its vertex 0 lies in the middle of the
/// petiole: along increasing index it runs petiole, first junction, first half of the blade, apex,
/// second half, second junction, petiole. A landmark's place on it is the index of its nearest
/// vertex, the first one among equals. Stored landmarks have integer coordinates; a coordinate goes
/// from float to integer by truncation toward zero.
///
/// The landmark lists are snapshots of the slice read last and do not follow later changes of the
/// items. They belong to the manager: the next reading and the destructor release them. Items and
/// models belong to the stack.
class ModelsManager : public AbstractBlade
{
public:
    ModelsManager();
    ~ModelsManager() override;

    /// The open stack, not owned; to be set before anything else is called.
    void setStack(LMXStack& openStack) { stack = &openStack; }

    void setVenationType(VenationType type) { venationType = type; }

    VenationType getVenationType() const { return venationType; }

    // Creation of the landmark models: each makes the model with its colours and symbols, keeps it
    // in its member, adds it to the stack and announces it. Contour and petiole first delete a
    // model of that name; for the others the caller has deleted.
    void createModelApex();
    void createModelContour();
    void createModelPetiole();
    void createModelPrimarySinus();
    void createModelPrimaryPeaks();
    void createModelPrimarySinusDistal();
    void createModelPrimaryPeaksDistal();
    void createModelSecondarySinus();
    void createModelSecondaryPeaks();

    // The same on another stack than the open one.
    void createModelApex(Stack& other);
    void createModelContour(Stack& other);
    void createModelPetiole(Stack& other);
    void createModelPrimarySinus(Stack& other);
    void createModelPrimaryPeaks(Stack& other);

    /// Reads all landmarks of a slice; what the slice lacks is null, and so is a contour without
    /// vertices. Of two items of one model the later one is read.
    void getModels(int slice);

    /// Reads contour, petiole and apex only and leaves the other members alone; always true.
    bool getModelsForResampling(int slice);

    /// The item's vertices as a closed curve. One whose perimeter exceeds its vertex count comes
    /// resampled to one vertex per unit of length, with a positive `twiceArea(0, 1)`; another one
    /// keeps its vertices and their order.
    Curve<float> getCurveModelItem(const ModelItem& item) const;

    /// The item's vertices in their order.
    Vertices<float> getModelItem(const ModelItem& item) const;

    /// The same, multiplied by `scale`.
    Vertices<float> getModelItemCalibration(const ModelItem& item, float scale) const;

    // Places of landmarks on the contour read last, or on a given curve: one index a point, in the
    // order of the points. Without the landmark, or the contour, the vector is empty.
    Vector<int> indexesPetiole() const;
    Vector<int> indexesPrimarySinuses() const;
    Vector<int> indexesPrimaryPeaks() const;
    Vector<int> indexesPetiole(const Curve<float>& curve) const;
    Vector<int> indexesPrimarySinuses(const Curve<float>& curve) const;
    Vector<int> indexesPrimaryPeaks(const Curve<float>& curve) const;
    Vector<int> indexesPrimarySinuses(const Vertices<float>& sinuses,
                                      const Curve<float>& curve) const;

    /// Place of the apex; -1 if no apex, or no contour, was read.
    int apexIndex() const;
    int indexApex(const Curve<float>& curve) const;

    /// The places of the two junctions in ascending order.
    Vector<int> findIndexPetiole(const Curve<float>& curve) const;

    /// Distance from the middle of the junctions, given by their two indices, to a vertex, on
    /// integer coordinates.
    float lengthLeaf(const Vector<int>& junctions, int vertex) const;
    float lengthLeaf(const Curve<float>& curve, const Vector<int>& junctions, int vertex) const;
    /// The same for the apex.
    float lengthLeaf(const Curve<float>& curve) const;

    /// The vertex from `first` to `last - 1` that lies farthest from the middle of those two, the
    /// first one where truncated distances are equal; 0 for an empty range.
    int findIndexMaxDistance(const Curve<float>& curve, int first, int last) const;

    /// Tells blade from petiole by their areas. The curve starts at the first junction; `junctions`
    /// holds both indices. Gives the index of the petiole's middle and that of the apex.
    Vector<int> findPoints(const Curve<float>& curve, const Vector<int>& junctions) const;

    /// Appends contour vertex `index` to the apex item and announces the item.
    void addApex(int index);

    /// Moves the stored junctions onto the contour, the one of smaller index first. The list that
    /// was read stays as it is; so below.
    void putPetiolesOnCurve();

    /// Moves the stored sinuses onto the contour, in their order.
    void putSinusOnCurve();

    /// Makes vertex `index` of the curve its vertex 0 and stores the curve, truncated, as the
    /// slice's contour. The one place where a stored contour changes form.
    void putOriginContour(Curve<float>& curve, int index);

    /// A copy of the list, with all vertices of the item removed; without a list, or with an empty
    /// one, an empty list, and the item stays. The item is detached. The caller owns the result.
    Vertices<float>* cleanModelsItem(const Vertices<float>* list, ModelItem* item) const;

    /// Folds the labels of an earlier hierarchy back into plain sinuses and tips on all slices, so
    /// that a hierarchy can run again.
    void createModelsForHierarchy();

    /// The same for the sinuses alone: those that a hierarchy made secondary or distal are plain
    /// sinuses again, and their models are gone. Tips stay as they are. Without such models nothing
    /// is touched.
    void foldSinuses();

    /// The slice read last has one apex, two junctions, a sinus, a tip and a contour of more than
    /// three vertices.
    bool verifyModels() const;

    /// Makes the still empty items of the secondary landmarks for the slice; their models exist.
    void createModelsItemsSecondary(int slice);

    /// Checks number and order of a slice's landmarks; an empty report means good. It also moves
    /// the junctions onto the contour and stores the contour with vertex 0 in the middle of the
    /// petiole. The venation type is not looked at.
    void checkLeaves(int slice, std::string& report);

    /// Reports a contour that crosses itself. Quadratic in the contour's vertices.
    void checkBlades(int slice, std::string& report);

    /// What kept a hierarchy from running: the slices that failed their checks, each with its
    /// report; empty if all are good.
    const std::string& getLeafFaults() const { return leafFaults_; }

protected:
    /// Checks the leaves of all slices, and tells the faults if there are any.
    bool leavesAreGood();

    /// Removes all vertices of an item, which is detached then, and of its list.
    static void emptyLandmarks(ModelItem& item, Vertices<float>& list);

    /// Adds the contour's vertices at `indexes` to the item.
    void appendLandmarks(ModelItem& item, const std::vector<int>& indexes) const;

    /// Deletes an item that has no vertex, and sets the pointer to null. The deletion of an item
    /// that was `announced` is announced too.
    static void dropIfEmpty(ModelItem*& item, bool announced);

    /// The pattern of a run: progress, `createModels`, `process` on each slice, and at the end
    /// `closingText` as a message, followed by what the slices reported, one a line.
    void runOnAllSlices(const std::string& closingText);

    /// Adds the curve's vertex at `index`, truncated, to the item and attaches it; announces
    /// nothing.
    static void appendLandmark(ModelItem& item, const Curve<float>& curve, int index);

    // Replace a list that was read by another one.
    void setApex(const Vertices<float>& points);
    void setPrimarySinus(const Vertices<float>& points);
    void setPrimaryPeak(const Vertices<float>& points);

    VenationType venationType = PINNATE;
    LMXStack* stack = nullptr;
    LMXItemConversionAction* conversionAction = nullptr;
    LMXItemVerticesChangeAction* verticesAction = nullptr;

    Curve<float>* contour = nullptr;
    Vertices<float>* petiole = nullptr;
    Vertices<float>* apex = nullptr;
    Vertices<float>* primarySinus = nullptr;
    Vertices<float>* primaryDistalSinus = nullptr;
    Vertices<float>* primaryPeak = nullptr;
    Vertices<float>* primaryDistalPeak = nullptr;
    Vertices<float>* secondarySinus = nullptr;
    Vertices<float>* secondaryPeak = nullptr;

    Model* contourModel = nullptr;
    Model* petioleModel = nullptr;
    Model* apexModel = nullptr;
    Model* primarySinusModel = nullptr;
    Model* primaryDistalSinusModel = nullptr;
    Model* primaryPeakModel = nullptr;
    Model* primaryDistalPeakModel = nullptr;
    Model* secondarySinusModel = nullptr;
    Model* secondaryPeakModel = nullptr;

    ModelItem* contourItem = nullptr;
    ModelItem* petioleItem = nullptr;
    ModelItem* apexItem = nullptr;
    ModelItem* primarySinusItem = nullptr;
    ModelItem* primaryDistalSinusItem = nullptr;
    ModelItem* primaryPeakItem = nullptr;
    ModelItem* primaryDistalPeakItem = nullptr;
    ModelItem* secondarySinusItem = nullptr;
    ModelItem* secondaryPeakItem = nullptr;

private:
    void readLandmark(int slice, const char* model, ModelItem*& item, Vertices<float>*& list);

    template <class List>
    void replace(List*& member, std::unique_ptr<List> list);
    void changeVertices(ModelItem& item, const Vertices<int>& vertices);
    Vertices<float> sortedOutSinuses() const;
    void foldLabels(Vertices<float>& sinuses, Vertices<float>& peaks);
    void storeLandmarks(Model& model, int slice, const Vertices<float>& points);
    std::string missingLandmarks() const;
    void bringToWorkingOrder();
    void landmarkFaults(std::string& report);

    std::string leafFaults_;
    // The lists that the members point to, in no order.
    std::vector<std::unique_ptr<Vertices<float>>> lists_;
};
