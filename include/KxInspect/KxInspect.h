// The whole interface of the library but KxMathTypes.h, which needs the headers of KxMath and Qt.
#pragma once

#include "Error.h"
#include "Export.h"
#include "Profile.h"
#include "Progress.h"
#include "Recording.h"
