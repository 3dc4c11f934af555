#include "host/view/pictureloader.h"

#include "host/view/slicepicture.h"
#include "image/sources/imagesource.h"
#include "stack/slice.h"
#include "system/exception.h"

#include <utility>

namespace {

/// Files of images are read by any thread; what lies in memory or in other files is not shared.
bool isReadByOthers(const Slice& slice)
{
    constexpr int file = 0;
    constexpr int mosaic = 1;
    constexpr int tiffPage = 4;
    const int type = slice.isEmpty() ? -1 : slice.getImageSource().getType();
    return type == file || type == mosaic || type == tiffPage;
}

bool isSmall(const Slice& slice)
{
    constexpr long long pixels = 4'000'000;
    try {
        return static_cast<long long>(slice.width()) * slice.height() <= pixels;
    } catch (const Exception&) {
        return true; // the picture will tell the same
    }
}

} // namespace

PictureLoader::PictureLoader(QObject* parent)
    : QObject(parent)
{
    pool_.setMaxThreadCount(1);
}

PictureLoader::~PictureLoader()
{
    pool_.waitForDone();
}

std::shared_ptr<const SlicePicture> PictureLoader::request(const Slice& slice)
{
    if (kept_[1].slice == &slice) {
        std::swap(kept_[0], kept_[1]);
    }
    if (kept_[0].slice == &slice) {
        return kept_[0].picture;
    }
    if (isSmall(slice) || !isReadByOthers(slice)) {
        keep(&slice, std::make_shared<SlicePicture>(slice));
        return kept_[0].picture;
    }
    if (!busy_) {
        start(std::make_shared<Slice>(slice), &slice);
    } else if (loading_ == &slice) {
        waiting_.reset();
    } else if (waitingFor_ != &slice || !waiting_) {
        waiting_ = std::make_shared<Slice>(slice);
        waitingFor_ = &slice;
    }
    return nullptr;
}

void PictureLoader::clear()
{
    kept_[0] = kept_[1] = Entry();
    waiting_.reset();
    loading_ = nullptr; // what is on its way is nobody's any more
    ++generation_;
}

void PictureLoader::dropFaults()
{
    for (Entry& entry : kept_) {
        if (entry.picture && !entry.picture->fault().isEmpty()) {
            entry = Entry();
        }
    }
}

void PictureLoader::start(std::shared_ptr<const Slice> description, const Slice* slice)
{
    busy_ = true;
    loading_ = slice;
    // Room first: no more than two pictures at a time.
    kept_[1] = Entry();
    const int generation = generation_;
    pool_.start([this, description = std::move(description), slice, generation] {
        auto picture = std::make_shared<const SlicePicture>(*description);
        QMetaObject::invokeMethod(
            this,
            [this, generation, slice, picture = std::move(picture)] {
                take(generation, slice, picture);
            },
            Qt::QueuedConnection);
    });
}

void PictureLoader::take(int generation,
                         const Slice* slice,
                         const std::shared_ptr<const SlicePicture>& picture)
{
    busy_ = false;
    loading_ = nullptr;
    const bool wanted = generation == generation_;
    if (wanted) {
        keep(slice, picture);
    }
    if (waiting_) {
        start(std::exchange(waiting_, nullptr), waitingFor_);
    }
    if (wanted) {
        emit loaded();
    }
}

void PictureLoader::keep(const Slice* slice, std::shared_ptr<const SlicePicture> picture)
{
    kept_[1] = std::exchange(kept_[0], Entry{slice, std::move(picture)});
}
