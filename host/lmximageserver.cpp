#include "interface/lmximageserver.h"

LMXImageServer::LMXImageServer()
    : autoDelete_(true)
    , baseSize_(128, 128)
{}

void LMXImageServer::setAutoDelete(bool value)
{
    autoDelete_ = value;
}

void LMXImageServer::setBaseSize(const QSize& size)
{
    baseSize_ = size;
}
