#pragma once

#include <QObject>
#include <QThreadPool>

#include <memory>

class Slice;
class SlicePicture;

/// Makes pictures of slices, one at a time: small ones at once, large ones in another thread, while
/// the view goes on. A request takes the place of one that has not begun.
///
/// It keeps the last two pictures, whose size is bounded by nothing but the images.
class PictureLoader : public QObject
{
    Q_OBJECT

public:
    explicit PictureLoader(QObject* parent = nullptr);

    /// Waits for the picture on its way.
    ~PictureLoader() override;

    /// The slice's picture if it is there; else null, and `loaded` will come. The slice is asked for
    /// nothing later on: its description is copied.
    std::shared_ptr<const SlicePicture> request(const Slice& slice);

    /// Forgets all pictures, so that images are read afresh.
    void clear();

    /// Forgets what could not be read, so that it is tried again.
    void dropFaults();

    bool isBusy() const { return busy_; }

signals:
    /// A picture that was asked for came.
    void loaded();

private:
    struct Entry
    {
        const Slice* slice = nullptr;
        std::shared_ptr<const SlicePicture> picture;
    };

    void start(std::shared_ptr<const Slice> description, const Slice* slice);
    void
    take(int generation, const Slice* slice, const std::shared_ptr<const SlicePicture>& picture);
    void keep(const Slice* slice, std::shared_ptr<const SlicePicture> picture);

    QThreadPool pool_;
    Entry kept_[2]; // the newest first
    std::shared_ptr<const Slice> waiting_;
    const Slice* waitingFor_ = nullptr;
    const Slice* loading_ = nullptr;
    int generation_ = 0;
    bool busy_ = false;
};
