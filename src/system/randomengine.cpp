#include "system/randomengine.h"

RandomEngine::~RandomEngine() = default;
