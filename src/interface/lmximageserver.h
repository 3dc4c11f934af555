#pragma once

#include <QSize>

/// The host's server of scaled slice images. Its operations are the host's: this library declares
/// them only, and the process that loads it defines them.
class LMXImageServer
{
public:
    LMXImageServer();

    /// Whether images are released as soon as nobody shows them.
    void setAutoDelete(bool value);

    /// The size that an image is scaled to.
    void setBaseSize(const QSize& size);

private:
    bool autoDelete_;
    QSize baseSize_;
};
