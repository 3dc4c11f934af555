#include "host/panels/slicethumbnails.h"

#include "image/pixels/image0.h"
#include "interface/lmxsliceinsertiondeletionaction.h"
#include "interface/lmxslicepixmapcache.h"
#include "interface/lmxstack.h"
#include "interface/qimageconversion.h"
#include "stack/stackslice.h"
#include "system/exception.h"

#include <QImage>

#include <algorithm>
#include <memory>

namespace {

constexpr std::size_t mostWaiting = 40;

QString describe(const Exception& error)
{
    const QString what = QString::fromStdString(error.getWhat());
    const auto* file = dynamic_cast<const FileError*>(&error);
    return file && !file->getFilename().empty()
               ? QString::fromStdString(file->getFilename()) + ": " + what
               : what;
}

QImage smallPicture(const Slice& slice, int side)
{
    Image0 image;
    slice.load(image);
    return toQImage(image).scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

} // namespace

SliceThumbnails::SliceThumbnails(QObject* parent)
    : QObject(parent)
{
    // One at a time: a large photograph takes a hundred megabytes while it is read.
    pool_.setMaxThreadCount(1);
}

SliceThumbnails::~SliceThumbnails()
{
    pool_.waitForDone();
}

QPixmap SliceThumbnails::find(LMXStack& stack, const StackSlice& slice)
{
    if (stack_ != &stack) {
        forget();
        stack_ = &stack;
    }
    if (const QPixmap* picture = stack.getSlicePixmapCache().find(slice)) {
        return *picture;
    }
    request(slice);
    return QPixmap();
}

QString SliceThumbnails::fault(const StackSlice& slice) const
{
    const auto found = faults_.find(&slice);
    return found == faults_.end() ? QString() : found->second;
}

void SliceThumbnails::request(const StackSlice& slice)
{
    if (&slice == running_ || faults_.count(&slice) > 0) {
        return;
    }
    const auto found = std::find(waiting_.begin(), waiting_.end(), &slice);
    if (found != waiting_.end()) {
        waiting_.erase(found);
    }
    waiting_.push_back(&slice);
    if (waiting_.size() > mostWaiting) {
        waiting_.erase(waiting_.begin());
    }
    startNext();
}

void SliceThumbnails::startNext()
{
    if (running_ || waiting_.empty()) {
        return;
    }
    running_ = waiting_.back();
    waiting_.pop_back();
    // The thread has a description of its own and touches no slice.
    const auto own = std::make_shared<const Slice>(*running_);
    const auto work = [this, own, generation = generation_, slice = running_, side = side_] {
        QImage picture;
        QString fault;
        try {
            picture = smallPicture(*own, side);
        } catch (const Exception& error) {
            fault = describe(error);
        } catch (const std::bad_alloc&) {
            fault = "There is not enough memory for the image";
        }
        QMetaObject::invokeMethod(
            this, [=] { store(generation, slice, picture, fault); }, Qt::QueuedConnection);
    };
    pool_.start(work);
}

void SliceThumbnails::store(int generation,
                            const StackSlice* slice,
                            const QImage& image,
                            const QString& fault)
{
    if (generation != generation_) {
        return;
    }
    running_ = nullptr;
    if (fault.isEmpty()) {
        stack_->getSlicePixmapCache().insert(*slice, *new QPixmap(QPixmap::fromImage(image)));
    } else {
        faults_[slice] = fault;
    }
    emit made(slice);
    startNext();
}

void SliceThumbnails::forget()
{
    ++generation_;
    waiting_.clear();
    running_ = nullptr;
    faults_.clear();
    stack_ = nullptr;
}

void SliceThumbnails::stackCloseEvent(LMXStackCloseEvent& event)
{
    if (&event.getStack() == stack_) {
        forget();
    }
}

void SliceThumbnails::processSliceInsertionDeletionAction(LMXSliceInsertionDeletionAction& action)
{
    // A slice that left may be gone soon, and another one come to its address.
    if (stack_ && action.getSlice().getStack() == stack_) {
        stack_->getSlicePixmapCache().remove(action.getSlice());
        forget();
    }
}
